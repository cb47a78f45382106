#include "tools/orvane/files/RecordWriter.h"

#include "tools/orvane/files/Output.h"

#include <fmt/format.h>

#include <utility>

namespace orvane::tool {

namespace {

std::string numberText(const Record& number) {
    return number.is_number_float() ? fmt::format("{}", number.get<double>()) : number.dump();
}

std::string fieldText(const Record& field) {
    if (field.is_null()) {
        return "";
    }
    if (field.is_string()) {
        return field.get<std::string>();
    }
    if (!field.is_array()) {
        return numberText(field);
    }
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        text += i == 0 ? "" : ",";
        text += fieldText(field[i]);
    }
    return text;
}

std::string quoted(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char character : text) {
        result += character == '"' ? "\"\"" : std::string(1, character);
    }
    return result + "\"";
}

} // namespace

std::string csvLine(const std::vector<std::string>& columns, const Record& record) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        line += i == 0 ? "" : ",";
        line += quoted(fieldText(record.value(columns[i], Record())));
    }
    return line;
}

std::string csvHeader(const std::vector<std::string>& columns) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        line += i == 0 ? "" : ",";
        line += quoted(columns[i]);
    }
    return line;
}

std::string jsonLine(const Record& record) {
    return record.dump(-1, ' ', false, Record::error_handler_t::replace);
}

RecordWriter::RecordWriter(Format format, std::vector<std::string> columns)
    : format(format), columns(std::move(columns)) {}

void RecordWriter::Write(const Record& record) {
    if (format == Format::Json) {
        writeOut(jsonLine(record) + "\n");
    } else if (format == Format::Csv) {
        const std::string header = hasHeader ? "" : csvHeader(columns) + "\n";
        hasHeader = true;
        writeOut(header + csvLine(columns, record) + "\n");
    }
}

} // namespace orvane::tool
