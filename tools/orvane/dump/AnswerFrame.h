#pragma once

#include "tools/orvane/dump/TcpSegment.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane::tool::dump {

// One answer of the plugin's on its way: four bytes of length, and the payload.
class AnswerFrame final {
public:
    // Takes what belongs to the frame from the front of `bytes`.
    void Take(ByteView& bytes);
    // Bytes of the payload that the capture lacks; false if they cannot all be the payload's.
    bool Skip(std::uint64_t count);
    void Reset();

    bool HasBegun() const { return headerSize > 0; }
    bool HasLength() const;
    bool IsComplete() const;
    // Longer than the plugin can send.
    bool IsNonsense() const;
    std::size_t Length() const { return length; }
    std::size_t Received() const { return payload.size(); }
    std::uint64_t Missing() const { return missing; }
    ByteView Payload() const { return payload; }

private:
    std::size_t headerSize = 0;
    std::size_t length = 0;
    std::uint64_t missing = 0;
    std::vector<std::uint8_t> payload;
};

} // namespace orvane::tool::dump
