#include "Waiting.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace orvane::detail {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kCheckInterval(100);
constexpr milliseconds kLongestPoll(3'600'000);
// poll ignores negative descriptors.
constexpr int kNoSocket = -1;

} // namespace

Clock::time_point fromNow(milliseconds duration) {
    const auto now = Clock::now();
    const auto longest = std::chrono::floor<milliseconds>(Clock::time_point::max() - now);
    return now + std::min(duration, longest);
}

Waited waitFor(int socket, short events, Clock::time_point deadline,
               const std::function<bool()>& cancelled) {
    const milliseconds longest = cancelled ? kCheckInterval : kLongestPoll;
    for (;;) {
        if (cancelled && cancelled()) {
            return Waited::Cancelled;
        }
        // Rounded up, so that a wait does not end just before its deadline.
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        const milliseconds wait = std::clamp(left, milliseconds(0), longest);
        pollfd waited{.fd = socket, .events = events, .revents = 0};
        const int ready = ::poll(&waited, 1, static_cast<int>(wait.count()));
        if (ready > 0 || (ready < 0 && errno != EINTR)) {
            return Waited::Ready;
        }
        if (ready == 0 && left <= longest) {
            return Waited::Late;
        }
    }
}

Waited sleepUntil(Clock::time_point deadline, const std::function<bool()>& cancelled) {
    return waitFor(kNoSocket, 0, deadline, cancelled);
}

} // namespace orvane::detail
