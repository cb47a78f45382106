#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "tools/orvane/cli/GlobalOptions.h"

namespace orvane::tool {

using Record = nlohmann::ordered_json; // include <nlohmann/json.hpp> where one is made

// Records look the same in all subcommands:
// - Field names are in snake_case, except names that users give.
// - Numbers from 0.0001 to 1000000 have no exponent. A float has enough digits to parse back to the
//   same float.
// - NaN and infinities are null in JSON, else "nan", "inf" or "-inf".
// - "aircraft_id" is a number in JSON, else text like 0xB9852EB1; null without an aircraft.
// - In CSV, null is an empty field, and an array one field with commas between its elements.

inline constexpr const char* kAircraftId = "aircraft_id";

// A field as text, for CSV and for people.
std::string fieldText(const std::string& name, const Record& field);
std::string aircraftText(std::uint32_t id);
// Null without an aircraft.
Record aircraftRecord(std::uint32_t id);
// Rounds seconds and milliseconds for records.
double toThreeDecimals(double number);

// A record as CSV, without a line end: the fields that `columns` names, in its order.
std::string csvLine(const std::vector<std::string>& columns, const Record& record);
// The names of the columns.
std::string csvHeader(const std::vector<std::string>& columns);

// A record as a JSON object, without a line end; ASCII only. Bytes that are not UTF-8 are replaced.
std::string jsonText(const Record& record);

// Writes records to standard output, each at once on its own line: JSON objects, or CSV with a
// header before the first record.
class RecordWriter final {
public:
    RecordWriter(Format format, std::vector<std::string> columns);

    // False for Format::Text, which the caller prints itself.
    bool IsWanted() const { return format != Format::Text; }
    void Write(const Record& record);

private:
    const Format format;
    const std::vector<std::string> columns;
    bool hasHeader = false;
};

} // namespace orvane::tool
