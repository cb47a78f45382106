#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>

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
    std::array<std::uint8_t, 4> parts{}; // 1, 0, 7, 10 of the servers known today
    std::uint32_t revision = 0;          // 6
};

// A connection that declares inputs and outputs once and then exchanges values.
//
// Every call sends one request and blocks until its answer is there. An answer whose shape does not
// fit the declarations means that the request reached the server in pieces: the client then
// connects anew, declares everything again and asks once more; only a second failure is thrown, as
// ProtocolError.
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
    // Called like those: with the id of another aircraft than in the answer before, or 0 when it
    // was unloaded; not for the first one that is seen.
    void onAircraftChanged(std::function<void(std::uint32_t)> callback);

    // Also tells whether a server of this protocol is there at all.
    Version version();

    // Replaces all that was declared before, also for later connections, and also if it throws. The
    // server keeps the first identifier of a command output for as long as a connection lives: if
    // one changes here, or becomes another command's, the client reconnects first.
    Answer define(Definitions definitions);

    // Sends values and reports the outputs; without items it only asks. The effect of the items is
    // seen in the next answer. std::invalid_argument, and nothing is sent: an action that is not
    // declared, or no definitions at all.
    //
    // With OnLoss::Reconnect, the items of a call that lost the connection underway are not sent
    // again, since they may be minutes old when the simulator is back; the answer is the one to the
    // repeated definitions. A call that begins without a connection makes one and then does its
    // work.
    Answer exchange(std::span<const Item> items = {});
    Answer exchange(std::initializer_list<Item> items);

    // Closes the connection if there is one, makes a new one with back-off and repeats the
    // declarations. ConnectError: Backoff::within is over.
    void reconnect();
    // Ends what is held, see Options::releaseHeld, and closes the connection. The destructor does
    // the same.
    void close() noexcept;
    bool isConnected() const noexcept;

private:
    class Session;
    std::unique_ptr<Session> session;
};

} // namespace orvane::tarnel
