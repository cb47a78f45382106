#pragma once

#include "tools/orvane/dump/TcpSegment.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <set>
#include <vector>

namespace orvane::tool::dump {

// What a client has sent and the plugin has not consumed, with the bounds of the single sends, as
// far as segments show them.
class RequestBuffer final {
public:
    void Append(std::int64_t timeNs, ByteView added);
    void Consume(std::size_t count);
    void Clear();

    std::size_t Size() const { return bytes.size(); }
    ByteView View() const { return bytes; }
    // When the first byte was sent; 0 if there is none.
    std::int64_t FirstTimeNs() const;
    // Where sends begin, except one that begins the buffer.
    std::set<std::size_t> Bounds() const;

private:
    struct Send {
        std::uint64_t begin = 0; // counted from the first byte of the connection
        std::int64_t timeNs = 0;
    };

    std::vector<std::uint8_t> bytes;
    std::uint64_t consumed = 0;
    // The last one that begins at or before the first byte, and all after it.
    std::deque<Send> sends;
};

} // namespace orvane::tool::dump
