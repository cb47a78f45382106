#pragma once

#include "tools/demo/TarnelWire.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// The client's side of the Velmar protocol, as far as the demo speaks it. Like the Tarnel side it
// shares nothing with the plugin.
namespace demo {

enum class VelmarType : std::uint32_t { Int = 1, Float, Byte, IntArray, FloatArray };

// One request of several packets, which the server answers in one frame.
class VelmarRequest final {
public:
    VelmarRequest();

    // Names of at most 255 bytes; longer ones: std::invalid_argument.
    void RegisterDataref(std::uint32_t id, VelmarType type, std::uint32_t elements,
                         const std::string& name);
    void RegisterCommand(std::uint32_t id, const std::string& name);
    void Read(std::uint32_t id);
    void WriteInt(std::uint32_t id, std::int32_t value);
    void PollCommands();

    // The identification and the packets.
    const Bytes& Wire() const { return bytes; }

private:
    void word(std::uint32_t value);
    void shortText(const std::string& text);

    Bytes bytes;
};

struct VelmarCommandState {
    std::uint32_t id = 0;
    // 1 pressed; 2 pressed and released before the poll.
    std::uint8_t state = 0;

    bool operator==(const VelmarCommandState&) const = default;
};

// Takes an answer apart in the order in which the packets were sent. Every call that does not find
// what it expects throws WireError.
class VelmarAnswer final {
public:
    explicit VelmarAnswer(Bytes payload);

    // The reply to a registration or a write of `id`; a refusal throws, too.
    void ExpectDone(std::uint32_t packetType, std::uint32_t id);
    std::int32_t Int(std::uint32_t id);
    float Float(std::uint32_t id);
    std::vector<float> Floats(std::uint32_t id, std::size_t count);
    std::vector<VelmarCommandState> CommandStates();
    void ExpectEnd() const;

private:
    void expectValue(std::uint32_t id, std::size_t length);
    void expect(const std::string& what, std::uint32_t expected);
    std::uint32_t word();
    std::span<const std::uint8_t> take(std::size_t count);

    Bytes bytes;
    std::size_t position = 0;
};

namespace velmar_packet {
inline constexpr std::uint32_t kRegisterDataref = 1;
inline constexpr std::uint32_t kRegisterCommand = 3;
inline constexpr std::uint32_t kRead = 5;
inline constexpr std::uint32_t kWrite = 6;
inline constexpr std::uint32_t kPoll = 8;
} // namespace velmar_packet

} // namespace demo
