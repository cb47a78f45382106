#include "tools/orvane/files/RecordWriter.h"

#include <cmath>
#include <iterator>
#include <utility>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

std::string numberText(const Record& number) {
    if (!number.is_number_float()) {
        return number.dump();
    }
    const auto value = number.get<double>();
    return std::isnan(value) ? "nan" : fmt::format("{}", value);
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

std::string fieldText(const std::string& name, const Record& field) {
    if (field.is_null()) {
        return "";
    }
    if (field.is_string()) {
        return field.get<std::string>();
    }
    if (name == kAircraftId && field.is_number()) {
        return aircraftText(field.get<std::uint32_t>());
    }
    if (!field.is_array()) {
        return numberText(field);
    }
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        text += i == 0 ? "" : ",";
        text += fieldText(name, field[i]);
    }
    return text;
}

std::string aircraftText(std::uint32_t id) {
    return fmt::format("0x{:08X}", id);
}

Record aircraftRecord(std::uint32_t id) {
    return id == 0 ? Record() : Record(id);
}

double toThreeDecimals(double number) {
    constexpr double kThousand = 1000;
    return std::round(number * kThousand) / kThousand;
}

std::string csvLine(const std::vector<std::string>& columns, const Record& record) {
    std::string line;
    // Most records have their fields in the order of the columns and need no search.
    auto next = record.begin();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        line += i == 0 ? "" : ",";
        const bool isNext = next != record.end() && next.key() == columns[i];
        const auto field = isNext ? next : record.find(columns[i]);
        line += field == record.end() ? "" : quoted(fieldText(columns[i], *field));
        next = field == record.end() ? next : std::next(field);
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

std::string jsonText(const Record& record) {
    constexpr bool kAsciiOnly = true;
    return record.dump(-1, ' ', kAsciiOnly, Record::error_handler_t::replace);
}

RecordWriter::RecordWriter(Format format, std::vector<std::string> columns)
    : format(format), columns(std::move(columns)) {}

void RecordWriter::Write(const Record& record) {
    if (format == Format::Json) {
        printData(jsonText(record));
    } else if (format == Format::Csv) {
        if (!std::exchange(hasHeader, true)) {
            printData(csvHeader(columns));
        }
        printData(csvLine(columns, record));
    }
}

} // namespace orvane::tool
