#include "tools/orvane/files/CsvFields.h"

namespace orvane::tool {

namespace {

// Removes a quoted field from the line, which begins with the quote.
std::optional<std::string> takeQuoted(std::string_view& line) {
    std::string field;
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (line[i] != '"') {
            field += line[i];
        } else if (i + 1 < line.size() && line[i + 1] == '"') {
            field += line[i++];
        } else {
            line.remove_prefix(i + 1);
            return field;
        }
    }
    return std::nullopt;
}

std::string takePlain(std::string_view& line) {
    std::string field(line.substr(0, line.find(',')));
    line.remove_prefix(field.size());
    return field;
}

} // namespace

std::optional<std::vector<std::string>> csvFields(std::string_view line) {
    std::vector<std::string> fields;
    while (true) {
        std::optional<std::string> field =
            line.starts_with('"') ? takeQuoted(line) : takePlain(line);
        if (!field) {
            return std::nullopt;
        }
        fields.push_back(std::move(*field));
        if (line.empty()) {
            return fields;
        }
        if (line.front() != ',') {
            return std::nullopt;
        }
        line.remove_prefix(1);
    }
}

} // namespace orvane::tool
