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

// What may be done a second time, on a new connection.
struct Repeat {
    bool whenTorn = false; // after an answer of unexpected shape
    bool whenLost = false; // after the end of the connection, under OnLoss::Reconnect
};

// Keeps a connection to the server, and makes a new one when it is lost or out of step.
//
// Any failure in the middle of an exchange closes the connection. Each new one begins with the
// release of what the session held on the one before, and with the declarations.
class Link final {
public:
    // One or more exchanges, and the decoding of their answers.
    using Work = std::function<void(Connection&)>;
    enum class Outcome { Done, NotRepeated };

    // Connects, as Options::onStart says, without declarations: nothing can be declared yet.
    // ConnectError, TimeoutError, CancelledError. Borrows the session, which must be ready: the
    // link is the last of its members.
    Link(Options options, ISession& session);
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    void setCallbacks(Callbacks newCallbacks) { callbacks = std::move(newCallbacks); }

    // Does the work on the connection, on a new one if there is none, and once more as far as
    // `repeat` allows. NotRepeated: the connection was lost on the way, a new one was made, and the
    // work was not repeated on it. After a CancelledError nothing is held any more, or its text
    // says what is.
    Outcome carryOut(const std::string& doing, Repeat repeat, const Work& work);

    // Lets time pass; CancelledError.
    void waitUntil(Clock::time_point moment, const std::string& doing);

    // With back-off. ConnectError when its time is over; ProtocolError, Refused and CancelledError
    // at once. Declarations that are torn get a second try.
    void reconnect();
    // For a server that was there a moment ago: backs off only under OnLoss::Reconnect.
    void renew();
    // Ends what is held, on a connection that is there. If that fails the connection is closed, and
    // the next one does it; under OnLoss::Throw the failure is thrown.
    void releaseHere();
    // Ends what is held, also on a connection made for it, and closes.
    void close() noexcept;
    // The same without calling back, and without another try after one that was in vain.
    void closeForGood() noexcept;
    bool isConnected() const noexcept { return connection != nullptr; }

    // The beginning of the text of an error.
    std::string place(const std::string& doing) const { return errorPrefix(options, doing); }

private:
    // What `call` does; a CancelledError comes out after the release.
    template <typename Call>
    auto releasingIfCancelled(Call call);
    Outcome tryToCarryOut(const std::string& doing, Repeat repeat, const Work& work);
    void ensureConnected(const std::string& doing);
    void attempt(const std::string& doing, const Work& work);
    void backOffUntilConnected();
    // Returns the reason for another try, if one is needed.
    std::optional<std::string> tryToConnect();
    void connectAnew(int triesToDeclare);
    std::unique_ptr<Connection> makeDeclared(int tries);
    void drop(const Error& reason);

    // Each ends what is held by `end`, whatever Options::cancelled says, or throws an Error.
    void release();
    void releaseHere(Clock::time_point end);
    void releaseElsewhere(Clock::time_point end);
    Options optionsUntil(Clock::time_point end) const;
    // "releasing sim/a and sim/b"
    std::string releasing() const;

    const Options options;
    ISession& session;
    Callbacks callbacks;
    std::unique_ptr<Connection> connection;
    bool releasedInVain = false; // since the last connection
};

} // namespace orvane::detail
