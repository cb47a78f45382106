#pragma once

#include "tools/orvane/dump/TcpSegment.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace orvane::tool::dump {

// One direction of a TCP connection, put in order: what was sent twice is delivered once, what came
// too early waits, and what the capture lacks is told as a gap.
//
// A gap is what the other side acknowledges although it was never captured, and what was cut off a
// captured packet. A capture that begins in the middle is taken up with its first segment.
class StreamAssembler final {
public:
    struct Handlers {
        std::function<void(ByteView)> bytes;
        std::function<void(std::uint64_t size)> gap;
        std::function<void()> end; // the sender has no more
    };

    explicit StreamAssembler(Handlers handlersOfOwner);

    // A segment of this direction.
    void Add(const TcpSegment& segment);
    // The other direction has everything before this sequence number.
    void Acknowledge(std::uint32_t sequence);
    // The capture is over: what waits is delivered, with the gaps before it.
    void Finish();

    bool HasBegun() const { return next.has_value(); }

private:
    // Waits for what is before it.
    struct Piece {
        std::vector<std::uint8_t> bytes;
        std::uint64_t size = 0; // on the wire
    };

    std::optional<std::uint64_t> positionOf(std::uint32_t sequence) const;
    void deliver(std::uint64_t position, ByteView bytes, std::uint64_t size);
    void deliverWaiting();
    void skipTo(std::uint64_t position);
    void endIfComplete();

    Handlers handlers;
    // Bytes are counted from a number that leaves room before the first one, and holds its sequence
    // number in the low 32 bits.
    std::optional<std::uint64_t> next;
    std::optional<std::uint64_t> finPosition;
    bool hasEnded = false;
    std::map<std::uint64_t, Piece> waiting;
};

} // namespace orvane::tool::dump
