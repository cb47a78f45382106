#include "tools/orvane/serve/LiveReader.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "orvane/Errors.h"
#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

constexpr double kShortestInterval = 1.0 / 60;
// With nothing to read, a lost connection should still be noticed.
constexpr double kIdleInterval = 0.25;
constexpr double kSecondsBetweenTries = 1;
// The simulator remembers a press until it is asked, and each question delays the values.
constexpr std::uint64_t kReadingsPerPoll = 3;

} // namespace

LiveReader::LiveReader(const GlobalOptions& globals, Hub& hub) : globals(globals), hub(hub) {}

void LiveReader::Run() {
    while (!isInterrupted() && !connect()) {
        sleepUntil(std::chrono::steady_clock::now() + secondsOf(kSecondsBetweenTries));
    }
    Pace pace(kShortestInterval);
    while (!isInterrupted()) {
        try {
            client->Try([this] { step(); });
        } catch (const Refused&) {
            generation.reset(); // a dataref is gone; which of them is found out
        }
        if (!poller || poller->Values().empty()) {
            pace.WaitUntil(pace.Elapsed() + kIdleInterval);
        }
        pace.WaitForNext(kSecondsPerYear);
    }
}

bool LiveReader::connect() {
    const auto end = std::chrono::steady_clock::now() + secondsOf(kSecondsPerYear);
    try {
        client.emplace(globals, end, [this](const std::string& line) { tell(line); });
        tell("");
        return true;
    } catch (const CancelledError&) {
        return false;
    } catch (const Error& error) {
        if (told != error.what()) {
            told = error.what();
            tool::tell(told);
            hub.Tell(LiveState::Waiting, told);
        }
        return false;
    }
}

// A simulator that is back may have other names.
void LiveReader::tell(const std::string& line) {
    if (line.empty()) {
        if (!told.empty()) {
            tool::tell("the simulator is back");
        }
        generation.reset();
        hub.Tell(LiveState::Connected, globals.host);
    } else if (line != told) {
        tool::tell(line);
        hub.Tell(LiveState::Lost, line);
    }
    told = line;
}

void LiveReader::step() {
    if (generation != hub.Generation()) {
        takeUnion();
    }
    read();
    if (!commands.empty() && ++readings % kReadingsPerPoll == 0) {
        for (const CommandEvent& event : events.Take(client->Client().pollPresses())) {
            hub.Report(event);
        }
    }
}

void LiveReader::takeUnion() {
    const Hub::Union all = hub.All();
    unregisterAll();
    missing = registerCommands(all.commands);
    poller.emplace(client->Client(), all.datarefs, DatarefPoller::Types::Open);
    for (const DatarefArgument& each : poller->Datarefs().Known()) {
        registered.push_back(each.Dataref().name);
    }
    std::sort(registered.begin(), registered.end());
    registered.erase(std::unique(registered.begin(), registered.end()), registered.end());
    poller->FindTypes();
    const std::vector<std::string>& unknown = poller->Datarefs().Unknown();
    missing.insert(missing.end(), unknown.begin(), unknown.end());
    generation = all.generation;
    types = typesOf(poller->Datarefs().Known());
    hub.SetDatarefs(poller->Datarefs().Known(), missing);
}

void LiveReader::unregisterAll() {
    poller.reset();
    // The connection may be lost in between.
    for (; !registered.empty(); registered.pop_back()) {
        client->Client().unregisterDataref(registered.back());
    }
    for (; !commands.empty(); commands.pop_back()) {
        client->Client().unregisterCommand(commands.back());
    }
}

// Returns those that the simulator does not have.
std::vector<std::string> LiveReader::registerCommands(const std::vector<std::string>& names) {
    std::vector<std::string> refusedNames;
    try {
        client->Client().registerCommands(names);
    } catch (const Refused& refused) {
        refusedNames = refused.refusedNames();
    }
    std::copy_if(names.begin(), names.end(), std::back_inserter(commands), [&](const auto& name) {
        return std::find(refusedNames.begin(), refusedNames.end(), name) == refusedNames.end();
    });
    return refusedNames;
}

void LiveReader::read() {
    poller->Poll();
    const std::vector<DatarefArgument>& known = poller->Datarefs().Known();
    if (std::vector<Type> latest = typesOf(known); latest != types) {
        types = std::move(latest);
        hub.SetDatarefs(known, missing);
    }
    if (poller->Values().empty()) {
        client->Client().poll();
    }
    hub.Show(poller->Values(), poller->Changed());
}

std::vector<LiveReader::Type> LiveReader::typesOf(const std::vector<DatarefArgument>& datarefs) {
    std::vector<Type> result;
    std::transform(datarefs.begin(), datarefs.end(), std::back_inserter(result),
                   [](const DatarefArgument& each) { return Type(each.type, each.size); });
    return result;
}

} // namespace orvane::tool
