#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::tool {

// What a browser has still to be sent. One that does not read it loses its stream, and costs nobody
// else anything. Usable from several threads.
class EventStream final {
public:
    static constexpr std::size_t kMostBytes = 1024UL * 1024;

    // Adds a whole event. Never waits; too many bytes close the stream.
    void Push(std::string_view event);
    // All that is waiting; after a while without anything a comment, by which a browser that has
    // gone is noticed. Nothing after the end.
    std::optional<std::string> Next(std::chrono::milliseconds patience);
    void Close();
    bool IsClosed() const;

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::string waiting;
    bool isClosed = false;
};

} // namespace orvane::tool
