#include "tools/orvane/command/HeldCommands.h"

#include <algorithm>
#include <exception>

#include <fmt/format.h>

#include "orvane/Errors.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
using Names = std::vector<std::string>;

// How often to check that the simulator is still there.
constexpr std::chrono::milliseconds kCheckInterval(500);

void beginAndWait(velmar::Client& client, const Names& names, steady_clock::time_point end) {
    for (const std::string& name : names) {
        client.run(name, velmar::Action::Begin);
    }
    while (steady_clock::now() < end &&
           sleepUntil(std::min(end, steady_clock::now() + kCheckInterval))) {
        client.poll();
    }
}

} // namespace

void registerOrFail(velmar::Client& client, const Names& names) {
    try {
        client.registerCommands(names);
    } catch (const Refused& refused) {
        for (const std::string& name : refused.refusedNames()) {
            tell(fmt::format("{}: the simulator has no such command", name));
        }
        throw Failure(ExitCode::NotFoundOrRefused, "nothing was done");
    }
}

void holdCommands(const GlobalOptions& globals, const Names& names, steady_clock::time_point end) {
    Options options = globals.ForClient();
    options.releaseWithin = options.timeout;
    velmar::Client client(options);
    std::string notReleased;
    client.setCallbacks({.notReleased = [&](const Names& commands, const Error& error) {
        notReleased = fmt::format("{} could not be released and may still be down: {}",
                                  fmt::join(commands, ", "), error.what());
    }});
    registerOrFail(client, names);
    std::exception_ptr failure;
    try {
        beginAndWait(client, names, end);
    } catch (const CancelledError&) {
        // close() releases them.
    } catch (const Error&) {
        failure = std::current_exception();
    }
    client.close();
    if (!notReleased.empty()) {
        throw Failure(ExitCode::CannotConnect, notReleased);
    }
    if (failure) {
        tell("released on a new connection");
        std::rethrow_exception(failure);
    }
}

} // namespace orvane::tool
