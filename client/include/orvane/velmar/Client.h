#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvane/Errors.h"
#include "orvane/Export.h"
#include "orvane/Options.h"
#include "orvane/velmar/Value.h"

namespace orvane::velmar {

// A dataref to register. Arrays are read and written from element 0 on, `size` elements of them.
struct Dataref {
    std::string name;
    Type type = Type::Float;
    std::uint32_t size = 0;
};

enum class Action : std::uint8_t { Once = 1, Begin = 2, End = 3 };

enum class CommandState { Up, Down, Pressed /* and released since the last poll */ };

struct CommandReport {
    std::string name;
    CommandState state = CommandState::Up;
};

// Names and their new values.
using Changes = std::vector<std::pair<std::string, Value>>;

// Datarefs and commands by name. The client manages the numbers that the protocol uses, and splits
// long lists into requests that arrive whole.
//
// A call blocks until its answers have arrived. An answer of unexpected shape means that the
// request reached the server in pieces. The client then reconnects, registers everything again and
// asks again; only a second failure is thrown, as ProtocolError. `run` throws at the first, since
// the command may have been run.
//
// Options::onLoss says what a call does if it begins without a connection or loses it. With
// OnLoss::Reconnect it is carried out on the new connection, except for writes and actions that
// lost the connection halfway: they may have been carried out, or be minutes old when the simulator
// is back. They are not repeated, and throw a ClosedError once the new connection is there; except
// for an Action::End of what the client had begun, which the new connection ends.
//
// Usable from one thread at a time. A moved-from client can be assigned to and destroyed.
class ORVANE_API Client final {
public:
    // Connects. ConnectError, TimeoutError.
    explicit Client(Options options = {});
    ~Client();
    Client(Client&& other) noexcept;
    Client& operator=(Client&& other) noexcept;

    void setCallbacks(Callbacks callbacks);

    // Registering a dataref again, with another type or size, replaces it; a command that is
    // registered again starts as not pressed. Refused: the simulator does not have some of the
    // names; all others are registered. std::invalid_argument, and nothing is sent: an empty name,
    // one of more than 255 bytes, an array without a size.
    void registerDataref(const Dataref& dataref);
    void registerDatarefs(std::span<const Dataref> datarefs);
    void registerCommand(const std::string& name);
    void registerCommands(std::span<const std::string> names);
    // std::out_of_range, here and below: the name is not registered. Without a connection, the name
    // is just not registered on the next one.
    void unregisterDataref(std::string_view name);
    void unregisterCommand(std::string_view name);

    Value read(std::string_view name);
    // In the order of the names; in one request if one is enough.
    std::vector<Value> read(std::span<const std::string> names);

    // std::invalid_argument: not of the registered type or size. Success does not mean that the
    // dataref has changed: the simulator silently drops what it cannot write.
    void write(std::string_view name, const Value& value);
    void write(std::span<const std::pair<std::string, Value>> values);

    // Reads `rate` times a second and calls `changed` with what changed, until it returns false.
    // The first call gets all names, later ones those whose value, or one of whose elements, is
    // more than `deadband` away from what `changed` last got, in the unit of the dataref. With a
    // deadband of 0, any difference counts. `changed` may call the client, but must not unregister
    // one of the names or register it as another type.
    //
    // A rate that is too high for the simulator becomes the highest it can do. Throws what `read`
    // throws, and CancelledError also between two readings. std::invalid_argument: a rate that is
    // not above 0, a deadband below 0.
    void changes(std::span<const std::string> names, double rate, double deadband,
                 const std::function<bool(const Changes&)>& changed);

    // A command that was begun stays down until the program ends it, or finally the client, see
    // Options::releaseHeld. Begins nest: each needs its own end.
    void run(std::string_view name, Action action);

    // The commands that were pressed since they were registered; each call reports them again.
    std::vector<CommandReport> poll();
    // The commands that were pressed since the previous call; several presses of one command
    // between two calls are reported as one.
    std::vector<CommandReport> pollPresses();

    // Closes the connection if there is one, makes a new one with back-off and registers everything
    // again. ConnectError: Backoff::within is over. Refused: some names are gone; the new
    // connection is closed, and the next one tries them again unless they are unregistered.
    void reconnect();
    // Ends held commands, see Options::releaseHeld, and closes the connection. So does the
    // destructor.
    void close() noexcept;
    bool isConnected() const noexcept;
    // Options::host, or the address that was last found for kAnyHost.
    const std::string& host() const noexcept;

private:
    class Session;
    std::unique_ptr<Session> session;
};

} // namespace orvane::velmar
