#include "tools/orvane/drive/DriveSession.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "orvane/Errors.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/drive/UnknownNames.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool {

DriveSession::DriveSession(const Profile& profile, Options options, UnknownNames unknownNames,
                           DriveOutput& output)
    : profile(profile), options(std::move(options)), unknownNames(unknownNames), output(output) {}

void DriveSession::Run(const InputSource& source, double rate, const Limits& limits) {
    try {
        connect();
        output.Begin();
        exchangeRows(source, rate, limits);
        close();
    } catch (const CancelledError&) {
        abandon();
    } catch (...) {
        abandon();
        output.Finish();
        throw;
    }
    output.Finish();
}

void DriveSession::connect() {
    Options withCancel = options;
    withCancel.cancelled = [this] { return mayCancel && isInterrupted(); };
    withCancel.releaseWithin = options.timeout;
    client.emplace(withCancel);
    client->setCallbacks({
        .connected =
            [this] {
                mayCancel = false;
                mustDeclareAgain = profile.HasInputsOnOwnNames();
                tellIfReconnecting("connected again");
            },
        .disconnected =
            [this](const Error& error) {
                mayCancel = true;
                tellIfReconnecting(error.what());
            },
        .notReleased =
            [](const std::vector<std::string>& commands, const Error& error) {
                tell(fmt::format("{} may still be down: {}", fmt::join(commands, ", "),
                                 error.what()));
            },
    });
    declare();
    checkNames();
    mayCancel = false;
}

// The server binds the inputs of a message before its outputs have created their names. Sent again,
// the inputs find them.
void DriveSession::declare() {
    client->define(profile.definitions);
    if (profile.HasInputsOnOwnNames()) {
        client->define(profile.definitions);
    }
    mustDeclareAgain = false;
}

void DriveSession::checkNames() const {
    std::vector<ExpectedName> unknown;
    try {
        if (!profile.expectedNames.empty()) {
            velmar::Client other = connectVelmar();
            unknown = findUnknownNames(other, profile);
        }
    } catch (const CancelledError&) {
        throw;
    } catch (const Error& error) {
        if (unknownNames == UnknownNames::Refuse) {
            throw;
        }
        tell(fmt::format("the names of the profile could not be checked: {}", error.what()));
    }
    for (const ExpectedName& each : unknown) {
        tell(fmt::format("{}: the simulator has no such {} ({})", each.name,
                         each.isCommand ? "command" : "dataref", each.user));
    }
    if (!unknown.empty() && unknownNames == UnknownNames::Refuse) {
        throw Failure(ExitCode::NotFoundOrRefused, "nothing was sent");
    }
}

// The other protocol needs its own connection.
velmar::Client DriveSession::connectVelmar() const {
    Options once = options;
    once.host = client->host();
    once.onLoss = OnLoss::Throw;
    return velmar::Client(once);
}

// If nothing is thrown, the user should know why the values stand still.
void DriveSession::tellIfReconnecting(const char* news) const {
    if (options.onLoss == OnLoss::Reconnect) {
        tell(news);
    }
}

void DriveSession::exchangeRows(const InputSource& source, double rate, const Limits& limits) {
    pace.emplace(1 / rate);
    for (std::uint64_t count = 0; count < limits.MaxCount(); ++count) {
        const std::optional<InputRow> row = source(pace->Due());
        if (!row) {
            return;
        }
        const double moment = row->seconds.value_or(pace->Due());
        if (moment >= limits.MaxSeconds() || !pace->WaitUntil(moment)) {
            return;
        }
        exchange(row->items);
        pace->Advance();
    }
}

void DriveSession::exchange(const std::vector<tarnel::Item>& items) {
    if (mustDeclareAgain) {
        declare();
    }
    const auto begin = std::chrono::steady_clock::now();
    const tarnel::Answer answer = client->exchange(items);
    const std::chrono::duration<double, std::milli> roundTrip =
        std::chrono::steady_clock::now() - begin;
    hasSent = hasSent || !items.empty();
    output.Show({client->host(), pace->Elapsed(), roundTrip.count(), items, answer});
}

// Only another answer shows the effect of the last row.
void DriveSession::close() {
    if (hasSent) {
        exchange({});
    }
    client->close();
}

void DriveSession::abandon() noexcept {
    if (client) {
        client->close();
    }
}

} // namespace orvane::tool
