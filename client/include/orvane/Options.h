#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orvane {

class Error;

// How long `reconnect`, and a client that starts with OnStart::Wait, waits between two tries:
// `firstDelay`, then twice as long after each, up to `longestDelay`. It gives up, with a
// ConnectError, when `within` is over.
struct Backoff {
    std::chrono::milliseconds firstDelay{250};
    std::chrono::milliseconds longestDelay{5'000};
    std::chrono::milliseconds within{60'000};
};

// What the constructor of a client does if it cannot connect.
enum class OnStart {
    // Throws the ConnectError or TimeoutError.
    Throw,
    // Tries again, with Options::backoff, as `reconnect` does: for programs that may be started
    // before the simulator. A host name that does not exist is thrown all the same.
    Wait,
};

// What a call does when its connection is lost.
enum class OnLoss {
    // Throws, and so does every call until `reconnect` has made a new connection.
    Throw,
    // Reconnects by itself, as `reconnect` does, and repeats the declarations. An answer that does
    // not come in time is thrown as a TimeoutError all the same; the next call reconnects then.
    Reconnect,
};

struct Options {
    std::string host = "127.0.0.1"; // a name or an IPv4 address; the server speaks IPv4 only
    std::uint16_t port = 48000;
    // For connecting, and for each answer from the request on. The server answers in the second
    // frame after a request, so a simulator at 20 frames per second takes 100 ms.
    std::chrono::milliseconds timeout{2'000};
    OnStart onStart = OnStart::Throw;
    OnLoss onLoss = OnLoss::Reconnect;
    Backoff backoff;
    // Asked ten times a second, and after each signal, while a call waits: true ends the call with
    // a CancelledError. May be empty.
    std::function<bool()> cancelled;
    // A command that a client has begun stays down in the simulator until it is ended, also when
    // the client or its connection is gone. So the client keeps account of them and ends what is
    // left over: before a new `define` drops it, on `close`, destruction and CancelledError, and on
    // the new connection after a reconnection. False leaves all that to the program.
    bool releaseHeld = true;
    // How long a release may take, apart from one that is part of a reconnection. Neither `timeout`
    // nor `cancelled` counts for it.
    std::chrono::milliseconds releaseWithin{500};
};

// Called from within the calls of a client, on their thread, but not from its destructor, when what
// they refer to may be gone. A callback may not call its client.
struct Callbacks {
    // After each connection made, with its declarations made again; not for the first one, which is
    // made before callbacks can be set.
    std::function<void()> connected{};
    // With the reason: the connection was lost, or given up because of an answer that was wrong or
    // late. Not for `close` and `reconnect`.
    std::function<void(const Error&)> disconnected{};
    // With the commands that may still be down, and the reason why they could not be released: the
    // simulator has ended, or does not answer. The next connection and the next `close` try again;
    // the destructor does so only if nothing was tried since the last connection.
    std::function<void(const std::vector<std::string>&, const Error&)> notReleased{};
};

} // namespace orvane
