#include "tools/orvane/serve/EventStream.h"

#include <utility>

namespace orvane::tool {

void EventStream::Push(std::string_view event) {
    {
        const std::lock_guard lock(mutex);
        isClosed = isClosed || waiting.size() + event.size() > kMostBytes;
        if (!isClosed) {
            waiting += event;
        }
    }
    changed.notify_one();
}

std::optional<std::string> EventStream::Next(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex);
    changed.wait_for(lock, patience, [this] { return isClosed || !waiting.empty(); });
    if (isClosed) {
        return std::nullopt;
    }
    return waiting.empty() ? ":\n\n" : std::exchange(waiting, {});
}

void EventStream::Close() {
    {
        const std::lock_guard lock(mutex);
        isClosed = true;
    }
    changed.notify_one();
}

bool EventStream::IsClosed() const {
    const std::lock_guard lock(mutex);
    return isClosed;
}

} // namespace orvane::tool
