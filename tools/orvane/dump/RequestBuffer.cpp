#include "tools/orvane/dump/RequestBuffer.h"

#include <algorithm>

namespace orvane::tool::dump {

void RequestBuffer::Append(std::int64_t timeNs, ByteView added) {
    sends.push_back({consumed + bytes.size(), timeNs});
    bytes.insert(bytes.end(), added.begin(), added.end());
    Consume(0);
}

void RequestBuffer::Consume(std::size_t count) {
    count = std::min(count, bytes.size());
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    consumed += count;
    while (sends.size() > 1 && sends[1].begin <= consumed) {
        sends.pop_front();
    }
}

void RequestBuffer::Clear() {
    Consume(bytes.size());
}

std::int64_t RequestBuffer::FirstTimeNs() const {
    return bytes.empty() ? 0 : sends.front().timeNs;
}

std::set<std::size_t> RequestBuffer::Bounds() const {
    std::set<std::size_t> bounds;
    for (const Send& send : sends) {
        if (send.begin > consumed && send.begin < consumed + bytes.size()) {
            bounds.insert(static_cast<std::size_t>(send.begin - consumed));
        }
    }
    return bounds;
}

} // namespace orvane::tool::dump
