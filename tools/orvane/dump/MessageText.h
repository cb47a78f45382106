#pragma once

#include "tools/orvane/dump/Message.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::tool::dump {

// How times are written: as seconds since a moment, or as UTC.
struct TimeStyle {
    bool isAbsolute = false;
    std::int64_t originNs = 0;
};

// One line, ended by a line feed.
std::string messageAsText(const Message& message, const TimeStyle& style);

nlohmann::ordered_json messageAsRecord(const Message& message, const TimeStyle& style);
// The fields of a record; the typed values, which are objects, are none of them.
std::vector<std::string> messageColumns();

} // namespace orvane::tool::dump
