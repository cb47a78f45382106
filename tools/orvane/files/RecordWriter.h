#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/orvane/cli/GlobalOptions.h"

namespace orvane::tool {

using Record = nlohmann::ordered_json;

// What machines read is the same in all subcommands:
// - Names of fields are in snake_case, but for those that users give.
// - Numbers from 0.0001 to 1000000 have no exponent. A float has the digits that read back as the
//   same float.
// - A float that is not a number or infinite is null in JSON, else "nan", "inf" or "-inf".
// - "aircraft_id" is a number in JSON, else text like 0xB9852EB1, and null without an aircraft.
// - Null is an empty field in CSV. An array is one field there, with commas between its elements.

inline constexpr const char* kAircraftId = "aircraft_id";

// A field as text, for CSV and for people.
std::string fieldText(const std::string& name, const Record& field);
std::string aircraftText(std::uint32_t id);
// Null without an aircraft.
Record aircraftRecord(std::uint32_t id);
// Rounded, as seconds and milliseconds are in records.
double inThousandths(double number);

// A record as a line of CSV, without its end: the fields that `columns` name, in their order.
std::string csvLine(const std::vector<std::string>& columns, const Record& record);
// The names of the columns.
std::string csvHeader(const std::vector<std::string>& columns);

// A record as a JSON object on one line, without its end; ASCII only. Bytes that are not UTF-8 are
// replaced.
std::string jsonText(const Record& record);

// Writes records to standard output for machines, each as a line of its own and at once: JSON
// objects, or CSV under a header that is written with the first record.
class RecordWriter final {
public:
    RecordWriter(Format format, std::vector<std::string> columns);

    // False for Format::Text: the caller's own way of showing is wanted.
    bool IsWanted() const { return format != Format::Text; }
    void Write(const Record& record);

private:
    const Format format;
    const std::vector<std::string> columns;
    bool hasHeader = false;
};

} // namespace orvane::tool
