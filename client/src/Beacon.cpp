#include "Beacon.h"

#include <string>
#include <string_view>

#include "ByteReader.h"
#include "UnexpectedAnswer.h"

namespace orvane::detail {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kMark = "BECN\0"sv;
constexpr std::uint8_t kMajorVersion = 1;
constexpr std::uint32_t kSimulatorProgram = 1;
constexpr std::size_t kLongestName = 500;

SimulatorRole roleOf(std::uint32_t code) {
    switch (code) {
    case 1:
        return SimulatorRole::Master;
    case 2:
        return SimulatorRole::ExternalVisual;
    case 3:
        return SimulatorRole::InstructorStation;
    default:
        return SimulatorRole::Unknown;
    }
}

bool readMark(ByteReader& reader) {
    for (const char expected : kMark) {
        if (reader.readUInt8() != static_cast<std::uint8_t>(expected)) {
            return false;
        }
    }
    return true;
}

// Nothing if it is too long.
std::optional<std::string> readName(ByteReader& reader) {
    std::string name;
    while (const std::uint8_t byte = reader.readUInt8()) {
        if (name.size() == kLongestName) {
            return std::nullopt;
        }
        name += static_cast<char>(byte);
    }
    return name;
}

std::optional<HeardSimulator> readBeacon(ByteReader reader) {
    if (!readMark(reader) || reader.readUInt8() != kMajorVersion) {
        return std::nullopt;
    }
    reader.readUInt8(); // the minor version only appends
    if (reader.readUInt32() != kSimulatorProgram) {
        return std::nullopt;
    }
    HeardSimulator simulator;
    simulator.version = reader.readUInt32();
    simulator.role = roleOf(reader.readUInt32());
    reader.readUInt8(); // the port
    reader.readUInt8();
    const auto name = readName(reader);
    if (!name) {
        return std::nullopt;
    }
    simulator.computer = *name;
    return simulator;
}

} // namespace

std::optional<HeardSimulator> parseBeacon(std::span<const std::uint8_t> bytes) {
    try {
        return readBeacon(ByteReader(bytes));
    } catch (const UnexpectedAnswer&) {
        return std::nullopt; // cut off
    }
}

} // namespace orvane::detail
