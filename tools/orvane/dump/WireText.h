#pragma once

#include "tools/orvane/dump/TcpSegment.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>

namespace orvane::tool::dump {

// A float as a JSON number with as many digits as it needs; "nan", "inf" and "-inf" as texts, since
// JSON has no numbers for them.
nlohmann::ordered_json toJson(float value);

// A typed value for people: numbers as they are, texts without quotes, long arrays shortened.
std::string valueText(const nlohmann::ordered_json& value);

// "DE AD BE EF", shortened after some bytes.
std::string hexText(ByteView bytes);
// "0xA4572B5C"
std::string hexNumber(std::uint32_t value);

} // namespace orvane::tool::dump
