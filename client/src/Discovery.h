#pragma once

#include <memory>

#include "Connection.h"
#include "orvane/Discovery.h"

namespace orvane::detail {

// Makes the connection that kAnyHost describes, and sets `options.host` to its address. The options
// must outlive the connection. ConnectError, which says what was heard, and CancelledError; the
// host is then what it was before, since commands may be held there.
std::unique_ptr<Connection> connectToHeard(Options& options,
                                           std::chrono::milliseconds listenTime = kListenTime);

} // namespace orvane::detail
