#pragma once

#include <cstddef>
#include <cstdint>

// The constants of the Velmar protocol.
namespace orvane::tool::dump {

constexpr std::uint32_t kVelmarIdentification = 0x88776655;

enum class VelmarPacket : std::uint32_t {
    RegisterDataref = 1,
    UnregisterDataref,
    RegisterCommand,
    UnregisterCommand,
    ReadDataref,
    WriteDataref,
    RunCommand,
    PollCommandStates,
};

enum class VelmarType : std::uint32_t { None, Int, Float, Byte, IntArray, FloatArray };

constexpr std::uint32_t kVelmarSuccess = 1;
constexpr std::uint32_t kVelmarFailure = 2;
// What a failure was about.
constexpr std::uint32_t kAboutDataref = 1;
constexpr std::uint32_t kAboutCommand = 2;

} // namespace orvane::tool::dump
