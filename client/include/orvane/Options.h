#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orvane {

class Error;

// How long `reconnect`, and a client that starts with OnStart::Wait, waits between two tries:
// `firstDelay`, then twice as long each time, up to `longestDelay`. After `within` it gives up with
// a ConnectError.
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
    // before the simulator. A host name that does not exist still throws.
    Wait,
};

// What a call does when its connection is lost.
enum class OnLoss {
    // Throws, as does every later call until `reconnect` has made a new connection.
    Throw,
    // Reconnects by itself, as `reconnect` does, and repeats the declarations. A late answer still
    // throws a TimeoutError; the next call then reconnects.
    Reconnect,
};

struct Options {
    std::string host = "127.0.0.1"; // a name, an IPv4 address, or kAnyHost (Discovery.h)
    std::uint16_t port = 48000;
    // For connecting, and for each answer, counted from the request. The server answers in the
    // second frame after a request: a simulator at 20 frames per second takes 100 ms.
    std::chrono::milliseconds timeout{2'000};
    OnStart onStart = OnStart::Throw;
    OnLoss onLoss = OnLoss::Reconnect;
    Backoff backoff{};
    // Called ten times a second, and after each signal, while a call waits. If it returns true, the
    // call throws a CancelledError. May be empty.
    std::function<bool()> cancelled{};
    // A command that a client has begun stays down in the simulator until it is ended, even after
    // the client or its connection is gone. The client therefore remembers the commands that it
    // began and ends those left over: before a new `define` drops them, on `close`, destruction and
    // CancelledError, and on the new connection after a reconnection. False leaves this to the
    // program.
    bool releaseHeld = true;
    // How long a release may take, except as part of a reconnection. `timeout` and `cancelled` do
    // not apply to it.
    std::chrono::milliseconds releaseWithin{500};
};

// Called during the calls of a client, on their thread. Not called by the destructor, when what
// they refer to may be gone. A callback may not call its client.
struct Callbacks {
    // After each new connection, once the declarations are repeated. Not for the first connection,
    // which is made before callbacks can be set.
    std::function<void()> connected{};
    // With the reason: the connection was lost, or closed because an answer was wrong or late. Not
    // for `close` and `reconnect`.
    std::function<void(const Error&)> disconnected{};
    // With the commands that may still be down, and why they could not be released: the simulator
    // has ended or does not answer. The next connection and the next `close` try again. The
    // destructor does so only if no release has failed since the last connection.
    std::function<void(const std::vector<std::string>&, const Error&)> notReleased{};
};

} // namespace orvane
