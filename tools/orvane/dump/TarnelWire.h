#pragma once

#include <cstddef>
#include <cstdint>

// The constants of the Tarnel protocol.
namespace orvane::tool::dump {

constexpr std::uint32_t kTarnelIdentification = 0x44332211;

constexpr std::uint32_t kTarnelVersion = 0xB5006BB1;
constexpr std::uint32_t kTarnelDefinitions = 0xDDEEFFC0;
constexpr std::uint32_t kTarnelData = 0xEFBEADDE;

constexpr std::size_t kDefinitionsHeaderSize = 20;
constexpr std::size_t kInputRecordSize = 488;
constexpr std::size_t kOutputRecordSize = 116;
constexpr std::size_t kDataHeaderSize = 12;
constexpr std::size_t kDataItemSize = 8;
constexpr std::size_t kNameSize = 100;

constexpr std::uint32_t kAircraftEntryId = 0xFFFF;

constexpr std::int32_t kTypeInt = 1;
constexpr std::int32_t kTypeFloat = 2;
constexpr std::int32_t kTypeIntArray = 3;
constexpr std::int32_t kTypeFloatArray = 4;
constexpr std::int32_t kTypeCommand = 6;

} // namespace orvane::tool::dump
