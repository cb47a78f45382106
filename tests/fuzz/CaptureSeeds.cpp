#include "fuzz/CaptureSeeds.h"

#include <cstdint>

namespace {

constexpr unsigned char kFin = 0x11;
constexpr unsigned char kSyn = 0x02;
constexpr unsigned char kSynAck = 0x12;
constexpr unsigned char kAck = 0x10;

Bytes frame(const Bytes& payload) {
    return join({u32(static_cast<std::uint32_t>(payload.size())), payload});
}

// The aircraft alone fits every Tarnel request but VERSION; a status fits most Velmar packets.
Bytes plausibleAnswer(const Bytes& message, const Bytes& identification) {
    if (identification == u32(0x44332211)) {
        return message == fromHex("B1 6B 00 B5")
                   ? frame(fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00"))
                   : frame(fromHex("FF FF 00 00 04 00 00 00 78 56 34 12"));
    }
    const bool hasHead = message.size() >= 8;
    const Bytes head = hasHead ? Bytes(message.begin(), message.begin() + 8) : zeros(4);
    return frame(hasHead ? join({head, u32(1)}) : head);
}

Bytes bigEndian(std::uint32_t value, int size) {
    Bytes bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<unsigned char>(value >> static_cast<unsigned>(shift)));
    }
    return bytes;
}

// Builds the file packet by packet, of raw IP.
class CaptureWriter final {
public:
    void Write(bool isToPlugin, unsigned char flags, const Bytes& payload) {
        std::uint32_t& sequence = isToPlugin ? clientNext : pluginNext;
        const std::uint32_t other = isToPlugin ? pluginNext : clientNext;
        const auto size = static_cast<std::uint32_t>(40 + payload.size());
        const Bytes client = fromHex("0A 00 00 02");
        const Bytes plugin = fromHex("0A 00 00 01");
        content = join({content,
                        u32(++milliseconds / 1000),
                        u32(milliseconds % 1000 * 1000),
                        u32(size),
                        u32(size),
                        fromHex("45 00"),
                        bigEndian(size, 2),
                        fromHex("00 00 40 00 40 06 00 00"),
                        isToPlugin ? client : plugin,
                        isToPlugin ? plugin : client,
                        bigEndian(isToPlugin ? 5000 : 48000, 2),
                        bigEndian(isToPlugin ? 48000 : 5000, 2),
                        bigEndian(sequence, 4),
                        bigEndian(other, 4),
                        {0x50, flags},
                        zeros(6),
                        payload});
        const bool takesANumber = flags == kSyn || flags == kSynAck || flags == kFin;
        sequence += static_cast<std::uint32_t>(payload.size()) + (takesANumber ? 1 : 0);
    }

    Bytes content = fromHex(
        "D4 C3 B2 A1 02 00 04 00 00 00 00 00 00 00 00 00 FF FF 00 00 "
        "65 00 00 00");

private:
    std::uint32_t milliseconds = 0;
    std::uint32_t clientNext = 99;
    std::uint32_t pluginNext = 199;
};

} // namespace

std::vector<Turn> conversation(const std::vector<Bytes>& messages, const Bytes& identification) {
    std::vector<Turn> turns;
    for (const Bytes& message : messages) {
        turns.push_back({true, join({identification, message})});
        turns.push_back({false, plausibleAnswer(message, identification)});
    }
    return turns;
}

Bytes turnsAsScript(const std::vector<Turn>& turns) {
    Bytes script = {0};
    for (const Turn& turn : turns) {
        const auto size = static_cast<unsigned char>(turn.bytes.size() & 0xFFU);
        const auto high = static_cast<unsigned char>(turn.bytes.size() >> 8U);
        script = join({script,
                       {static_cast<unsigned char>(turn.isToPlugin ? 0 : 1), size, high},
                       turn.bytes});
    }
    return script;
}

Bytes turnsAsCapture(const std::vector<Turn>& turns) {
    CaptureWriter writer;
    writer.Write(true, kSyn, {});
    writer.Write(false, kSynAck, {});
    for (const Turn& turn : turns) {
        writer.Write(turn.isToPlugin, kAck, turn.bytes);
    }
    writer.Write(true, kFin, {});
    writer.Write(false, kFin, {});
    return writer.content;
}
