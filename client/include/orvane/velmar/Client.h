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

enum class CommandState { Up, Down, Pressed /* and released since it was looked at */ };

struct CommandReport {
    std::string name;
    CommandState state = CommandState::Up;
};

// Names and their new values.
using Changes = std::vector<std::pair<std::string, Value>>;

// Datarefs and commands by name. The numbers that the protocol knows them by are the client's
// affair, as is cutting long lists into requests of a size that arrives whole.
//
// A call blocks until its answers are there. An answer of another shape than asked for means that
// the request reached the server in pieces: the client then connects anew, registers everything
// again and asks once more; only a second failure is thrown, as ProtocolError. `run` throws at the
// first, since the command may have been run.
//
// A call that begins without a connection, or loses it underway, does what Options::onLoss says.
// With OnLoss::Reconnect it is then carried out on the new connection. The exception are writes and
// actions that lost the connection underway: they may have been carried out, or be minutes old
// when the simulator is back. They are not repeated, and a ClosedError says so; the new connection
// is there by then.
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

    // Registering. A name may be registered once per kind; again with another type or size it
    // replaces itself, and a command that is registered again begins with "not pressed". Refused:
    // the simulator does not have some of the names; all others are registered.
    // std::invalid_argument, and nothing is sent: an empty name, one of more than
    // 255 bytes, an array without a size.
    void registerDataref(const Dataref& dataref);
    void registerDatarefs(std::span<const Dataref> datarefs);
    void registerCommand(const std::string& name);
    void registerCommands(std::span<const std::string> names);
    // std::out_of_range: was not registered. The same for every name below. Without a connection
    // the name is only left out of the next one.
    void unregisterDataref(std::string_view name);
    void unregisterCommand(std::string_view name);

    Value read(std::string_view name);
    // In the order of the names; in one request as far as one is enough.
    std::vector<Value> read(std::span<const std::string> names);

    // std::invalid_argument: not of the registered type or size. That a value arrived does not mean
    // that it stays: the simulator drops what it cannot write, without a word.
    void write(std::string_view name, const Value& value);
    void write(std::span<const std::pair<std::string, Value>> values);

    // Reads `rate` times a second until `changed` returns false, and calls it with what changed:
    // the first time with all names, later with those that are more than `deadband` away from what
    // it got last, in the unit of the dataref; of an array, if one of the elements is. With a
    // deadband of 0, any difference counts. It may call the client, but not unregister one of the
    // names or register it as another type.
    //
    // A rate that the simulator cannot keep up with becomes as fast as it can. Ends with what
    // `read` throws, and with CancelledError also between two readings. std::invalid_argument: a
    // rate that is not above 0, a deadband below 0.
    void changes(std::span<const std::string> names, double rate, double deadband,
                 const std::function<bool(const Changes&)>& changed);

    // What was begun stays down until it is ended: by the program, or in the end by the client, see
    // Options::releaseHeld. Begins nest: each needs an end of its own.
    void run(std::string_view name, Action action);

    // The commands that were pressed since they were registered; each call reports it again.
    std::vector<CommandReport> poll();
    // The commands that were pressed since the call before: each press is reported, several between
    // two calls as one.
    std::vector<CommandReport> pollPresses();

    // Closes the connection if there is one, makes a new one with back-off and registers everything
    // again. ConnectError: Backoff::within is over. Refused: some names are gone; the new
    // connection is closed, and they are still wanted when the next one is made, unless they are
    // unregistered.
    void reconnect();
    // Ends what is held, see Options::releaseHeld, and closes the connection. The destructor does
    // the same.
    void close() noexcept;
    bool isConnected() const noexcept;

private:
    class Session;
    std::unique_ptr<Session> session;
};

} // namespace orvane::velmar
