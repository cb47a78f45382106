#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>

#include "orvane/Errors.h"
#include "orvane/Export.h"
#include "orvane/Options.h"
#include "orvane/tarnel/Answer.h"
#include "orvane/tarnel/Definitions.h"

namespace orvane::tarnel {

// A value for every input of an action: raw axis values run from 0 to 65535, 1 presses a command.
struct Item {
    ActionId action = 0;
    std::int32_t value = 0;
};

struct Version {
    std::array<std::uint8_t, 4> parts{}; // 1, 0, 7, 10 for the servers known today
    std::uint32_t revision = 0;          // 6
};

// A connection that declares inputs and outputs once and then exchanges values.
//
// Every call sends one request and blocks until the answer has arrived. An answer that does not fit
// the declarations means that the request reached the server in pieces. The client then reconnects,
// repeats the declarations and asks again; only a second failure is thrown, as ProtocolError.
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
    // Called like the callbacks above, with the new id, when it differs from the answer before; 0
    // means that the aircraft was unloaded. Not called for the first id.
    void onAircraftChanged(std::function<void(std::uint32_t)> callback);

    // Also shows whether the server speaks this protocol at all.
    Version version();

    // Replaces all earlier declarations, also for later connections, even if it throws. For as long
    // as a connection lives, the server keeps the first identifier of a command output: if that
    // changes, or is given to another command, the client reconnects first.
    Answer define(Definitions definitions);

    // Sends values and returns the outputs; without items it only asks. The next answer shows the
    // effect of the items. std::invalid_argument, and nothing is sent: an action that is not
    // declared, or no definitions at all.
    //
    // With OnLoss::Reconnect, a call that loses the connection does not send its items again, since
    // they may be minutes old when the simulator is back; it returns the answer to the repeated
    // definitions. A call that begins without a connection makes one first.
    Answer exchange(std::span<const Item> items = {});
    Answer exchange(std::initializer_list<Item> items);

    // Closes the connection if there is one, makes a new one with back-off and repeats the
    // declarations. ConnectError: Backoff::within is over.
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

} // namespace orvane::tarnel
