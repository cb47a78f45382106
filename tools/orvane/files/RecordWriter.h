#pragma once

#include "tools/orvane/cli/GlobalOptions.h"

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace orvane::tool {

using Record = nlohmann::ordered_json;

// A record as a line of CSV, without its end: the fields that `columns` name, in their order. An
// array is one field with commas between its elements; what is missing or null is empty.
std::string csvLine(const std::vector<std::string>& columns, const Record& record);
// The same as a JSON object.
std::string jsonLine(const Record& record);
// The names of the columns.
std::string csvHeader(const std::vector<std::string>& columns);

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
