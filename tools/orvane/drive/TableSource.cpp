#include "tools/orvane/drive/TableSource.h"

#include <algorithm>

#include <fmt/core.h>

#include "headless/lists/ParsedNumber.h"
#include "tools/orvane/files/CsvFields.h"

namespace orvane::tool {

namespace {

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

TableSource::TableSource(InputLines& lines, const Profile& profile, Problems& problems)
    : lines(lines), rows(lines, problems) {
    readHeader(profile);
}

std::optional<InputRow> TableSource::Next() {
    if (columns.empty()) {
        return std::nullopt;
    }
    while (const std::optional<std::string> line = nextLine()) {
        if (std::optional<InputRow> row = readRow(*line)) {
            return row;
        }
    }
    return std::nullopt;
}

std::optional<std::string> TableSource::nextLine() {
    std::optional<std::string> line = lines.Next();
    while (line && (trimmed(*line).empty() || line->starts_with('#'))) {
        line = lines.Next();
    }
    return line;
}

void TableSource::readHeader(const Profile& profile) {
    const std::optional<std::string> line = nextLine();
    const auto names = line ? csvFields(*line) : std::nullopt;
    if (!names) {
        rows.AddProblem(line ? "a quote is not closed"
                             : "the table is empty; it begins with the names of "
                               "inputs, separated by commas");
        return;
    }
    bool isValid = true;
    for (const std::string& name : *names) {
        const std::optional<Column> column = columnNamed(std::string(trimmed(name)), profile);
        isValid = isValid && column;
        columns.push_back(column.value_or(Column()));
    }
    if (!isValid) {
        columns.clear();
    }
}

std::optional<TableSource::Column> TableSource::columnNamed(const std::string& name,
                                                            const Profile& profile) {
    const auto isSame = [&](const Column& column) { return column.name == name; };
    if (std::any_of(columns.begin(), columns.end(), isSame)) {
        rows.AddProblem(fmt::format("there are two columns \"{}\"", name));
        return std::nullopt;
    }
    if (name == "time") {
        return Column{name, true, 0};
    }
    const ProfileInput* const input = profile.FindInput(name);
    if (input == nullptr) {
        rows.AddProblem(fmt::format("the profile has no input \"{}\"", name));
        return std::nullopt;
    }
    return Column{name, false, input->action};
}

std::optional<InputRow> TableSource::readRow(const std::string& line) {
    const auto fields = rows.Fields(line, columns.size());
    if (!fields) {
        return std::nullopt;
    }
    InputRow row;
    bool isValid = true;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string_view field = trimmed((*fields)[i]);
        isValid = (columns[i].isTime ? readTime(field, row) : readValue(field, columns[i], row)) &&
                  isValid;
    }
    return isValid ? std::optional(row) : std::nullopt;
}

bool TableSource::readTime(std::string_view field, InputRow& row) {
    row.seconds = rows.Seconds(field);
    return row.seconds.has_value();
}

bool TableSource::readValue(std::string_view field, const Column& column, InputRow& row) {
    if (field.empty()) {
        return true;
    }
    const std::optional<std::int32_t> value = headless::parsedNumber<std::int32_t>(field);
    if (!value) {
        rows.AddProblem(
            fmt::format("\"{}\" for \"{}\" is not a whole number from -2147483648 to "
                        "2147483647",
                        field, column.name));
        return false;
    }
    row.items.push_back({column.action, *value});
    return true;
}

} // namespace orvane::tool
