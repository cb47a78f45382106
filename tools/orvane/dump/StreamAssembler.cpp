#include "tools/orvane/dump/StreamAssembler.h"

#include <algorithm>
#include <utility>

namespace orvane::tool::dump {

namespace {

// Room for segments from before the capture began.
constexpr std::uint64_t kFirstLap = std::uint64_t{1} << 32U;
// No window is larger. A sequence number further ahead belongs to something else.
constexpr std::int64_t kLargestWindow = std::int64_t{1} << 30U;

} // namespace

StreamAssembler::StreamAssembler(Handlers handlersOfOwner) : handlers(std::move(handlersOfOwner)) {}

// Nothing when the number is far from what comes next.
std::optional<std::uint64_t> StreamAssembler::positionOf(std::uint32_t sequence) const {
    const auto distance = static_cast<std::int32_t>(sequence - static_cast<std::uint32_t>(*next));
    if (distance > kLargestWindow || distance < -kLargestWindow) {
        return std::nullopt;
    }
    return *next + static_cast<std::uint64_t>(std::int64_t{distance});
}

void StreamAssembler::Add(const TcpSegment& segment) {
    // The SYN takes a number of its own.
    const std::uint32_t sequence = segment.sequence + (segment.isSyn ? 1U : 0U);
    if (!next) {
        next = kFirstLap + sequence;
    }
    const std::optional<std::uint64_t> position = positionOf(sequence);
    if (!position || hasEnded) {
        return;
    }
    if (segment.isFin) {
        finPosition = *position + segment.payloadSize;
    }
    const ByteView captured =
        segment.payload.first(std::min(segment.payload.size(), segment.payloadSize));
    if (*position <= *next) {
        deliver(*position, captured, segment.payloadSize);
        deliverWaiting();
    } else if (segment.payloadSize > 0) {
        Piece& piece = waiting[*position];
        if (segment.payloadSize > piece.size) {
            piece = {{captured.begin(), captured.end()}, segment.payloadSize};
        }
    }
    endIfComplete();
}

void StreamAssembler::Acknowledge(std::uint32_t sequence) {
    if (!next || hasEnded) {
        return;
    }
    std::optional<std::uint64_t> position = positionOf(sequence);
    if (!position) {
        return;
    }
    // The FIN takes a number, too.
    if (finPosition) {
        position = std::min(*position, *finPosition);
    }
    while (*next < *position) {
        const std::uint64_t missingEnd =
            waiting.empty() ? *position : std::min(*position, waiting.begin()->first);
        skipTo(missingEnd);
        deliverWaiting();
    }
    endIfComplete();
}

void StreamAssembler::Finish() {
    while (!waiting.empty()) {
        skipTo(waiting.begin()->first);
        deliverWaiting();
    }
    endIfComplete();
}

// From a position that is not behind `next`; what is old is left out.
void StreamAssembler::deliver(std::uint64_t position, ByteView bytes, std::uint64_t size) {
    const std::uint64_t old = *next - position;
    if (old >= size) {
        return;
    }
    const std::uint64_t end = position + size;
    bytes = bytes.subspan(std::min<std::uint64_t>(old, bytes.size()));
    *next += bytes.size();
    if (!bytes.empty()) {
        handlers.bytes(bytes);
    }
    if (*next < end) {
        skipTo(end);
    }
}

void StreamAssembler::deliverWaiting() {
    while (!waiting.empty() && waiting.begin()->first <= *next) {
        const auto node = waiting.extract(waiting.begin());
        deliver(node.key(), node.mapped().bytes, node.mapped().size);
    }
}

void StreamAssembler::skipTo(std::uint64_t position) {
    const std::uint64_t size = position - *next;
    *next = position;
    if (size > 0) {
        handlers.gap(size);
    }
}

void StreamAssembler::endIfComplete() {
    if (!hasEnded && finPosition && *next >= *finPosition) {
        hasEnded = true;
        handlers.end();
    }
}

} // namespace orvane::tool::dump
