#pragma once

#include <optional>

#include "orvane/Options.h"
#include "orvane/tarnel/Client.h"
#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/drive/DriveOutput.h"
#include "tools/orvane/drive/InputSource.h"
#include "tools/orvane/drive/Profile.h"

namespace orvane::tool {

// What a session does if the simulator lacks a name.
enum class UnknownNames { Warn, Refuse };

// Connects, declares a profile, and exchanges values until the source, a limit or an interrupt ends
// it. However it ends, the client leaves no command down, or standard error names it.
class DriveSession final {
public:
    // Borrows all but the options.
    DriveSession(const Profile& profile, Options options, UnknownNames unknownNames,
                 DriveOutput& output);

    // `rate` is in exchanges per second. Failure: a name is unknown and UnknownNames::Refuse was
    // given; nothing was sent.
    void Run(const InputSource& source, double rate, const Limits& limits);

private:
    void connect();
    void declare();
    void checkNames() const;
    velmar::Client connectVelmar() const;
    void tellIfReconnecting(const char* news) const;
    void exchangeRows(const InputSource& source, double rate, const Limits& limits);
    void exchange(const std::vector<tarnel::Item>& items);
    void close();
    void abandon() noexcept;

    const Profile& profile;
    Options options;
    const UnknownNames unknownNames;
    DriveOutput& output;
    std::optional<tarnel::Client> client;
    std::optional<Pace> pace;
    bool hasSent = false;
    bool mustDeclareAgain = false;
    // True while there is no connection. With one, a row and its release are always completed.
    bool mayCancel = true;
};

} // namespace orvane::tool
