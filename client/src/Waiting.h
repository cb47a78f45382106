#pragma once

#include <chrono>
#include <functional>

namespace orvane::detail {

using Clock = std::chrono::steady_clock;

// This long from now, or as far away as the clock can tell.
Clock::time_point fromNow(std::chrono::milliseconds duration);

enum class Waited { Ready, Late, Cancelled };

// Waits until the socket has one of the poll events, the deadline is over, or `cancelled`, if set,
// returns true. A socket error counts as ready: the next call on the socket reports it.
Waited waitFor(int socket, short events, Clock::time_point deadline,
               const std::function<bool()>& cancelled);

// Waits for the deadline only: Late or Cancelled.
Waited sleepUntil(Clock::time_point deadline, const std::function<bool()>& cancelled);

} // namespace orvane::detail
