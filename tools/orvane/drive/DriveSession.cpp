#include "tools/orvane/drive/DriveSession.h"

#include "tools/orvane/cli/Interrupt.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdio>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "orvane/Errors.h"
#include "orvane/velmar/Client.h"

namespace orvane::tool {

DriveSession::DriveSession(const Profile& drivenProfile, Options clientOptions,
                           DriveOutput& sessionOutput)
    : profile(drivenProfile),
      options(std::move(clientOptions)),
      output(sessionOutput),
      held(drivenProfile) {}

void DriveSession::Run(IInputSource& source, const DriveLimits& limits) {
    try {
        connect();
        output.Begin();
        exchangeRows(source, limits);
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
    client.emplace(withCancel);
    client->setCallbacks({
        .connected =
            [this] {
                mayCancel = false;
                held.Lose();
                tell("connected again");
            },
        .disconnected =
            [this](const Error& error) {
                mayCancel = true;
                tell(error.what());
            },
    });
    client->define(profile.definitions);
    mayCancel = false;
}

// Where nothing is thrown, the user should know why the values stand still.
void DriveSession::tell(const char* news) const {
    if (options.onLoss == OnLoss::Reconnect) {
        fmt::print(stderr, "orvane: {}\n", news);
    }
}

void DriveSession::exchangeRows(IInputSource& source, const DriveLimits& limits) {
    pace.emplace(limits.rate);
    for (std::uint64_t count = 0; count < limits.exchanges; ++count) {
        const std::optional<InputRow> row = source.Next(pace->Due());
        if (!row) {
            return;
        }
        const double moment = row->seconds.value_or(pace->Due());
        if (moment >= limits.seconds || !pace->WaitUntil(moment)) {
            return;
        }
        exchange(row->items);
        pace->Advance();
    }
}

void DriveSession::exchange(const std::vector<tarnel::Item>& items) {
    held.Sending(items);
    const tarnel::Answer answer = client->exchange(items);
    held.Sent(items);
    hasSent = hasSent || !items.empty();
    endLostCommands();
    output.Show(pace->Elapsed(), answer);
}

// The last row's effect is seen in the answer to another request.
void DriveSession::close() {
    if (hasSent) {
        exchange(held.Releases());
    }
    client->close();
}

void DriveSession::abandon() noexcept {
    try {
        const std::vector<tarnel::Item> releases = held.Releases();
        if (!releases.empty() && client && client->isConnected()) {
            client->exchange(releases);
            held.Sent(releases);
        }
    } catch (const std::exception&) {
        // They are ended by their names instead.
    }
    try {
        held.GiveUp();
        endLostCommands();
    } catch (const std::exception&) {
        // Who reads the output may have gone; all commands have been tried.
    }
}

void DriveSession::endLostCommands() {
    const std::vector<std::string> commands = held.TakeLost();
    if (commands.empty()) {
        return;
    }
    try {
        Options once = options;
        once.onLoss = OnLoss::Throw;
        velmar::Client other(once);
        other.registerCommands(commands);
        for (const std::string& command : commands) {
            other.run(command, velmar::Action::End);
        }
    } catch (const Error& error) {
        fmt::print(stderr, "orvane: {} may still be down: {}\n", fmt::join(commands, ", "),
                   error.what());
    }
}

} // namespace orvane::tool
