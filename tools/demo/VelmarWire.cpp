#include "tools/demo/VelmarWire.h"

#include <bit>
#include <limits>
#include <stdexcept>
#include <utility>

namespace demo {

namespace {

constexpr std::uint32_t kIdentification = 0x88776655;
constexpr std::uint32_t kSuccess = 1;
constexpr std::size_t kWordSize = 4;
constexpr unsigned kByteBits = 8;

} // namespace

VelmarRequest::VelmarRequest() {
    word(kIdentification);
}

void VelmarRequest::RegisterDataref(std::uint32_t id, VelmarType type, std::uint32_t elements,
                                    const std::string& name) {
    word(velmar_packet::kRegisterDataref);
    word(id);
    word(static_cast<std::uint32_t>(type));
    word(elements);
    shortText(name);
}

void VelmarRequest::RegisterCommand(std::uint32_t id, const std::string& name) {
    word(velmar_packet::kRegisterCommand);
    word(id);
    shortText(name);
}

void VelmarRequest::Read(std::uint32_t id) {
    word(velmar_packet::kRead);
    word(id);
}

void VelmarRequest::WriteInt(std::uint32_t id, std::int32_t value) {
    word(velmar_packet::kWrite);
    word(id);
    word(kWordSize);
    word(static_cast<std::uint32_t>(value));
}

void VelmarRequest::PollCommands() {
    word(velmar_packet::kPoll);
}

void VelmarRequest::word(std::uint32_t value) {
    for (std::size_t i = 0; i < kWordSize; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (kByteBits * i)));
    }
}

void VelmarRequest::shortText(const std::string& text) {
    if (text.size() > std::numeric_limits<std::uint8_t>::max()) {
        throw std::invalid_argument("name of more than 255 bytes: " + text);
    }
    bytes.push_back(static_cast<std::uint8_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
}

VelmarAnswer::VelmarAnswer(Bytes payload) : bytes(std::move(payload)) {}

void VelmarAnswer::ExpectDone(std::uint32_t packetType, std::uint32_t id) {
    expect("packet type", packetType);
    expect("identifier", id);
    expect("status of " + std::to_string(id), kSuccess);
}

std::int32_t VelmarAnswer::Int(std::uint32_t id) {
    expectValue(id, kWordSize);
    return static_cast<std::int32_t>(word());
}

float VelmarAnswer::Float(std::uint32_t id) {
    expectValue(id, kWordSize);
    return std::bit_cast<float>(word());
}

std::vector<float> VelmarAnswer::Floats(std::uint32_t id, std::size_t count) {
    expectValue(id, kWordSize * count);
    std::vector<float> values;
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(std::bit_cast<float>(word()));
    }
    return values;
}

std::vector<VelmarCommandState> VelmarAnswer::CommandStates() {
    std::vector<VelmarCommandState> states;
    for (std::uint32_t left = word(); left > 0; --left) {
        const std::uint32_t id = word();
        states.push_back({id, take(1).front()});
    }
    return states;
}

void VelmarAnswer::ExpectEnd() const {
    if (position != bytes.size()) {
        throw WireError("an answer with " + std::to_string(bytes.size() - position) +
                        " bytes more than expected");
    }
}

void VelmarAnswer::expectValue(std::uint32_t id, std::size_t length) {
    ExpectDone(velmar_packet::kRead, id);
    expect("value length", static_cast<std::uint32_t>(length));
}

void VelmarAnswer::expect(const std::string& what, std::uint32_t expected) {
    const std::uint32_t found = word();
    if (found != expected) {
        throw WireError(what + ": expected " + std::to_string(expected) + ", got " +
                        std::to_string(found));
    }
}

std::uint32_t VelmarAnswer::word() {
    std::uint32_t value = 0;
    unsigned shift = 0;
    for (const std::uint8_t byte : take(kWordSize)) {
        value |= static_cast<std::uint32_t>(byte) << shift;
        shift += kByteBits;
    }
    return value;
}

std::span<const std::uint8_t> VelmarAnswer::take(std::size_t count) {
    if (bytes.size() - position < count) {
        throw WireError("an answer of " + std::to_string(bytes.size()) + " bytes ends too soon");
    }
    const std::span<const std::uint8_t> taken(bytes.data() + position, count);
    position += count;
    return taken;
}

} // namespace demo
