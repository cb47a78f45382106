#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Connection.h"
#include "ISession.h"
#include "Waiting.h"
#include "orvane/Errors.h"
#include "orvane/Options.h"

namespace orvane::detail {

// When work may be repeated on a new connection.
struct Repeat {
    bool whenTorn = false; // after an answer of unexpected shape
    bool whenLost = false; // after the end of the connection, under OnLoss::Reconnect
};

// Keeps a connection to the server, and makes a new one when it is lost or out of step.
//
// Any failure during an exchange closes the connection. Each new connection first releases what the
// session held on the old one, then repeats the declarations.
class Link final {
public:
    // One or more exchanges, and the decoding of their answers.
    using Work = std::function<void(Connection&)>;
    enum class Outcome { Done, NotRepeated };

    // Connects as Options::onStart says; nothing is declared yet. ConnectError, TimeoutError,
    // CancelledError. Borrows the session, which must be ready: the link is its last member.
    Link(Options options, ISession& session);
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    void setCallbacks(Callbacks newCallbacks) { callbacks = std::move(newCallbacks); }

    // Does the work, connecting first if needed, and repeats it as far as `repeat` allows.
    // NotRepeated: the connection was lost, a new one was made, and the work was not repeated on
    // it. After a CancelledError nothing is held any more, or its text names what is.
    Outcome carryOut(const std::string& doing, Repeat repeat, const Work& work);

    // Waits; CancelledError.
    void waitUntil(Clock::time_point moment, const std::string& doing);

    // Reconnects with back-off. ConnectError when its time is over; ProtocolError, Refused and
    // CancelledError at once. Torn declarations get a second try.
    void reconnect();
    // The same for a server that has just answered: backs off only under OnLoss::Reconnect.
    void renew();
    // Ends what is held, if there is a connection. If that fails, the connection is closed and the
    // next one ends it; under OnLoss::Throw the failure is thrown.
    void releaseHere();
    // Ends what is held, if necessary on a connection made for it, and closes.
    void close() noexcept;
    // The same without callbacks, and without another try after a failed one.
    void closeForGood() noexcept;
    bool isConnected() const noexcept { return connection != nullptr; }
    // Options::host, or the address that was found for kAnyHost.
    const std::string& host() const noexcept { return options.host; }

    // The beginning of an error text.
    std::string place(const std::string& doing) const { return errorPrefix(options, doing); }

private:
    // Runs `call`; releases what is held before a CancelledError leaves.
    template <typename Call>
    auto releasingIfCancelled(Call call);
    Outcome tryToCarryOut(const std::string& doing, Repeat repeat, const Work& work);
    void connectFirst();
    // To the server of before, or the one that is heard.
    std::unique_ptr<Connection> connectAnywhere();
    void ensureConnected(const std::string& doing);
    void attempt(const std::string& doing, const Work& work);
    void backOffUntilConnected();
    // Returns the reason for another try, if one is needed.
    std::optional<std::string> tryToConnect();
    void connectAgain(int triesToDeclare);
    std::unique_ptr<Connection> makeDeclared(int tries);
    void drop(const Error& reason);

    // Each ends what is held by `end`, whatever Options::cancelled says, or throws an Error.
    void release();
    void releaseHere(Clock::time_point end);
    void releaseElsewhere(Clock::time_point end);
    Options optionsUntil(Clock::time_point end) const;
    // "releasing sim/a and sim/b"
    std::string releasing() const;

    Options options;
    const bool isHostSought;
    ISession& session;
    Callbacks callbacks;
    std::unique_ptr<Connection> connection;
    bool releaseFailed = false; // since the last connection
};

} // namespace orvane::detail
