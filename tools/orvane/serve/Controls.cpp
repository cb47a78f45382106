#include "tools/orvane/serve/Controls.h"

#include <algorithm>
#include <vector>

#include <nlohmann/json.hpp>

#include "orvane/Errors.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/set/AssignmentWriter.h"

namespace orvane::tool {

namespace {

constexpr int kNotFound = 404;
constexpr int kConflict = 409;
constexpr int kUnavailable = 503;

HttpAnswer done() {
    return jsonAnswer("{}\n");
}

} // namespace

Controls::Controls(const GlobalOptions& globals)
    : globals(globals), releaser([this] { releaseOverdue(); }) {}

Controls::~Controls() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_all();
    releaser.join();
    if (client) {
        client->close(); // releases
    }
}

// The client's mutex must be held.
velmar::Client& Controls::connected() {
    if (!client) {
        Options options = globals.ForClient();
        options.backoff.within = options.timeout;
        options.releaseWithin = options.timeout;
        client.emplace(options);
        client->setCallbacks({.notReleased = [](const auto& commands, const Error& error) {
            for (const std::string& command : commands) {
                tell(command + " could not be released and may still be down: " + error.what());
            }
        }});
    } else if (!client->isConnected()) {
        try {
            client->reconnect();
        } catch (const Refused&) {
            // A name that this simulator lacks would be asked for again and again.
            client.reset();
        }
        // The new connection has ended it.
        const std::lock_guard lock(mutex);
        held.clear();
    }
    return client ? *client : connected();
}

HttpAnswer Controls::carryOut(const std::function<HttpAnswer(velmar::Client&)>& task) {
    const std::unique_lock lock(clientMutex, std::chrono::seconds(5));
    if (!lock.owns_lock()) {
        return textAnswer(kUnavailable, "the simulator is slow to answer");
    }
    try {
        return task(connected());
    } catch (const Refused& refused) {
        return textAnswer(kNotFound,
                          refused.refusedNames().front() + ": the simulator has no such name");
    } catch (const Error& error) {
        return textAnswer(kUnavailable, error.what());
    }
}

HttpAnswer Controls::Set(const Assignment& assignment) {
    return carryOut([&](velmar::Client& simulator) {
        const velmar::Dataref dataref = assignment.candidates.front().argument.Dataref();
        simulator.registerDataref(dataref);
        const auto outcome = writeAssignments(simulator, {assignment}).front();
        simulator.unregisterDataref(dataref.name);
        return jsonAnswer(jsonText(recordOf(outcome)) + "\n");
    });
}

HttpAnswer Controls::Press(const std::string& command) {
    return carryOut([&](velmar::Client& simulator) {
        if (isHeld(command)) {
            return textAnswer(kConflict, command + " is held");
        }
        simulator.registerCommand(command);
        simulator.run(command, velmar::Action::Once);
        simulator.unregisterCommand(command);
        return done();
    });
}

// True if the page holds it already.
bool Controls::renew(const CommandRequest& request) {
    const std::lock_guard lock(mutex);
    const auto found = held.find(request.command);
    if (found == held.end()) {
        return false;
    }
    found->second[request.id] = Clock::now() + kHoldsFor;
    return true;
}

HttpAnswer Controls::Hold(const CommandRequest& request) {
    if (renew(request)) {
        return done();
    }
    return carryOut([&](velmar::Client& simulator) {
        if (renew(request)) { // meanwhile
            return done();
        }
        simulator.registerCommand(request.command);
        simulator.run(request.command, velmar::Action::Begin);
        {
            const std::lock_guard lock(mutex);
            held[request.command][request.id] = Clock::now() + kHoldsFor;
        }
        changed.notify_all();
        return done();
    });
}

HttpAnswer Controls::Release(const CommandRequest& request) {
    const std::lock_guard clientLock(clientMutex);
    {
        const std::lock_guard lock(mutex);
        const auto found = held.find(request.command);
        if (found == held.end() || found->second.erase(request.id) == 0) {
            return textAnswer(kConflict, request.command + " is not held by this page");
        }
        if (!found->second.empty()) {
            return done();
        }
        held.erase(found);
    }
    end(request.command);
    return done();
}

// Tries again later if it fails: the simulator may be there, and the command down.
void Controls::end(const std::string& command) {
    try {
        if (!client || !client->isConnected()) {
            connected(); // that ends it
        } else {
            client->run(command, velmar::Action::End);
            client->unregisterCommand(command);
        }
    } catch (const Error&) {
        const std::lock_guard lock(mutex);
        held[command][{}] = Clock::now() + kHoldsFor;
    }
}

bool Controls::isHeld(const std::string& command) {
    const std::lock_guard lock(mutex);
    return held.contains(command);
}

std::optional<std::string> Controls::takeOverdue(Clock::time_point now) {
    const std::lock_guard lock(mutex);
    for (auto& [command, holders] : held) {
        std::erase_if(holders, [&](const auto& each) { return each.second <= now; });
        if (holders.empty()) {
            std::string overdue = command;
            held.erase(overdue);
            return overdue;
        }
    }
    return std::nullopt;
}

Controls::Clock::time_point Controls::nextDeadline() const {
    Clock::time_point next = Clock::now() + std::chrono::hours(1);
    for (const auto& [command, holders] : held) {
        for (const auto& [id, deadline] : holders) {
            next = std::min(next, deadline);
        }
    }
    return next;
}

void Controls::releaseOverdue() {
    std::unique_lock lock(mutex);
    while (!isEnding) {
        if (const auto deadline = nextDeadline(); Clock::now() < deadline) {
            changed.wait_until(lock, deadline);
            continue;
        }
        lock.unlock();
        endOverdue();
        lock.lock();
    }
}

void Controls::endOverdue() {
    const std::lock_guard clientLock(clientMutex);
    const Clock::time_point now = Clock::now();
    while (const std::optional<std::string> command = takeOverdue(now)) {
        end(*command);
    }
}

} // namespace orvane::tool
