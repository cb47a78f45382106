#include "tools/orvane/command/HeldCommands.h"

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/files/Output.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "orvane/Errors.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
// How often it is looked whether the simulator is still there.
constexpr std::chrono::milliseconds kBetweenLooks(500);

} // namespace

void registerOrRefuse(velmar::Client& client, const std::vector<std::string>& names) {
    try {
        client.registerCommands(names);
    } catch (const Refused& refused) {
        for (const std::string& name : refused.refusedNames()) {
            tell(fmt::format("{}: the simulator has no such command", name));
        }
        throw Failure(ExitCode::NotFoundOrRefused, "nothing was done");
    }
}

HeldCommands::HeldCommands(const GlobalOptions& globals, std::vector<std::string> names)
    : names(std::move(names)), client(optionsOf(globals)) {
    registerOrRefuse(client, this->names);
}

// An interrupt ends all waiting but that for the release.
Options HeldCommands::optionsOf(const GlobalOptions& globals) const {
    Options options = globals.ForClient(OnLoss::Throw);
    options.cancelled = [this] { return isInterrupted() && !isReleasing; };
    options.backoff.within = options.timeout;
    return options;
}

void HeldCommands::HoldUntil(steady_clock::time_point end) {
    std::exception_ptr failure;
    try {
        begin();
        wait(end);
    } catch (const CancelledError&) {
        // Released below, and done.
    } catch (const Error&) {
        failure = std::current_exception();
    }
    release();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void HeldCommands::begin() {
    for (const std::string& name : names) {
        ++begun;
        client.run(name, velmar::Action::Begin);
    }
}

void HeldCommands::wait(steady_clock::time_point end) {
    while (steady_clock::now() < end &&
           sleepUntil(std::min(end, steady_clock::now() + kBetweenLooks))) {
        client.poll();
    }
}

void HeldCommands::release() {
    isReleasing = true;
    if (!client.isConnected()) {
        releaseOnNewConnection();
        return;
    }
    try {
        endAll();
    } catch (const Error&) {
        releaseOnNewConnection();
    }
}

void HeldCommands::releaseOnNewConnection() {
    try {
        client.reconnect();
        endAll();
        tell("released on a new connection");
    } catch (const Error& error) {
        throw Failure(
            ExitCode::CannotConnect,
            fmt::format(
                "{} could not be released, unless the simulator has ended: {}",
                fmt::join(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(begun), ", "),
                error.what()));
    }
}

// In the reverse order. To end one that is up already does no harm.
void HeldCommands::endAll() {
    for (std::size_t i = begun; i > 0; --i) {
        client.run(names[i - 1], velmar::Action::End);
    }
}

} // namespace orvane::tool
