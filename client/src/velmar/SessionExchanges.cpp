// The part of Session that reads, writes, runs and polls what is registered.

#include <algorithm>
#include <chrono>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "UnexpectedAnswer.h"
#include "velmar/Batches.h"
#include "velmar/ChangeFilter.h"
#include "velmar/Checks.h"
#include "velmar/Registering.h"
#include "velmar/Releasing.h"
#include "velmar/Session.h"

namespace orvane::velmar {

namespace {

using detail::ByteReader;
using detail::Bytes;
using detail::ByteWriter;
using detail::Clock;
using detail::Connection;
using detail::Link;
using detail::Repeat;
using detail::UnexpectedAnswer;

// Reading and polling change nothing in the simulator. A write may be repeated at once, but not
// when the simulator is back after minutes; an action must never be repeated.
constexpr Repeat kReading{.whenTorn = true, .whenLost = true};
constexpr Repeat kWhenTorn{.whenTorn = true, .whenLost = false};
constexpr Repeat kNever{};

} // namespace

std::vector<Value> Client::Session::read(std::span<const std::string> names) {
    std::vector<const DatarefEntry*> entries;
    std::vector<Cost> costs;
    for (const std::string& name : names) {
        entries.push_back(&find(name));
        costs.push_back({wire::kReadSize, wire::readReplySize(entries.back()->dataref)});
    }
    std::vector<Value> values;
    for (const Batch batch : cutIntoRequests(costs, kEmpty)) {
        readBatch(std::span(entries).subspan(batch.begin, batch.end - batch.begin), values);
    }
    return values;
}

void Client::Session::readBatch(std::span<const DatarefEntry* const> batch,
                                std::vector<Value>& values) {
    const std::string doing = describe("reading", batch.front()->dataref.name, batch.size());
    std::size_t most = 0;
    for (const DatarefEntry* entry : batch) {
        most += wire::readReplySize(entry->dataref);
    }
    std::vector<Value> read;
    link.carryOut(doing, kReading, [&](Connection& on) {
        read.clear();
        ByteWriter request = wire::beginRequest();
        for (const DatarefEntry* entry : batch) {
            wire::writeRead(request, entry->number);
        }
        const Bytes answer = on.exchange(request.bytes(), doing, most);
        ByteReader reader(answer);
        for (const DatarefEntry* entry : batch) {
            read.push_back(wire::readReadReply(reader, entry->number, entry->dataref));
        }
        reader.expectEnd();
    });
    std::move(read.begin(), read.end(), std::back_inserter(values));
}

void Client::Session::write(std::span<const std::pair<std::string, Value>> values) {
    std::vector<Cost> costs;
    for (const auto& [name, value] : values) {
        checkValue(value, find(name).dataref);
        costs.push_back({wire::writeSize(value), wire::kLongestReply});
    }
    for (const Batch batch : cutIntoRequests(costs, kEmpty)) {
        writeBatch(values.subspan(batch.begin, batch.end - batch.begin));
    }
}

void Client::Session::writeBatch(std::span<const std::pair<std::string, Value>> batch) {
    const std::string doing = describe("writing", batch.front().first, batch.size());
    const Link::Outcome outcome = link.carryOut(doing, kWhenTorn, [&](Connection& on) {
        ByteWriter request = wire::beginRequest();
        for (const auto& [name, value] : batch) {
            wire::writeWrite(request, find(name).number, value);
        }
        const Bytes answer =
            on.exchange(request.bytes(), doing, batch.size() * wire::kLongestReply);
        ByteReader reader(answer);
        for (const auto& [name, value] : batch) {
            wire::readWriteReply(reader, find(name).number);
        }
        reader.expectEnd();
    });
    if (outcome == Link::Outcome::NotRepeated) {
        failNotRepeated(doing);
    }
}

void Client::Session::changes(std::span<const std::string> names, double rate, double deadband,
                              const std::function<bool(const Changes&)>& changed) {
    checkChanges(rate, deadband);
    const auto period =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / rate));
    ChangeFilter filter(deadband);
    for (auto next = Clock::now();; next = std::max(next + period, Clock::now())) {
        link.waitUntil(next, "waiting for the next reading");
        const Changes found = filter.take(names, read(names));
        if (!found.empty() && !changed(found)) {
            return;
        }
    }
}

// Alone in its request, so that its answer must be empty.
void Client::Session::run(std::string_view name, Action action) {
    checkAction(action);
    const Commands::value_type& entry = findCommand(name);
    const bool endsWhatItBegan = action == Action::End && begun.all().contains(entry.first);
    const std::string doing = describe("running", name, 1);
    const Link::Outcome outcome = link.carryOut(doing, kNever, [&](Connection& on) {
        // A begin may arrive even if no answer comes.
        if (tracksHeld && action == Action::Begin) {
            begun.begin(entry.first);
        }
        ByteWriter request = wire::beginRequest();
        wire::writeRun(request, entry.second, action);
        on.exchange(request.bytes(), doing, 0);
        if (action == Action::End) {
            begun.end(entry.first);
        }
    });
    // Each new connection first ends what was held.
    if (outcome == Link::Outcome::NotRepeated && !endsWhatItBegan) {
        failNotRepeated(doing);
    }
}

// By number, or by name if it has been unregistered since.
void Client::Session::release(Connection& on, const std::string& doing) {
    std::vector<ReleaseStep> steps;
    for (const auto& [name, times] : begun.all()) {
        if (const auto command = commands.find(name); command != commands.end()) {
            steps.insert(steps.end(), static_cast<std::size_t>(times.begun),
                         {ReleaseStep::Kind::End, command->second, name});
        }
    }
    takeSteps(on, doing, steps, begun);
    endByName(on, doing, begun, lastNumber + 1);
}

void Client::Session::releaseByName(Connection& on, const std::string& doing) {
    endByName(on, doing, begun, 1);
}

std::vector<CommandReport> Client::Session::poll() {
    std::vector<CommandReport> reports;
    const std::string doing = "polling commands";
    link.carryOut(doing, kReading, [&](Connection& on) {
        ByteWriter request = wire::beginRequest();
        wire::writePoll(request);
        const Bytes answer =
            on.exchange(request.bytes(), doing, wire::pollReplySize(commands.size()));
        ByteReader reader(answer);
        reports = toReports(wire::readPollReply(reader));
        reader.expectEnd();
    });
    return reports;
}

std::vector<CommandReport> Client::Session::pollPresses() {
    std::vector<std::string> names;
    std::vector<Cost> costs;
    for (const auto& [name, number] : commands) {
        names.push_back(name);
        costs.push_back({wire::registerCommandSize(name), wire::kLongestReply});
    }
    if (names.empty()) {
        return poll();
    }
    const Cost base{.request = kEmpty.request + wire::kPollSize,
                    .answer = kEmpty.answer + wire::pollReplySize(commands.size())};
    std::vector<CommandReport> reports;
    for (const Batch batch : cutIntoRequests(costs, base)) {
        pollBatch(std::span(names).subspan(batch.begin, batch.end - batch.begin), reports);
    }
    return reports;
}

// Registering a command again in the same request resets its state, and no press can get lost in
// between. Commands of other batches are reported with their own batch.
void Client::Session::pollBatch(std::span<const std::string> batch,
                                std::vector<CommandReport>& reports) {
    const std::string doing = describe("polling", batch.front(), batch.size());
    std::vector<CommandReport> all;
    link.carryOut(doing, kReading, [&](Connection& on) {
        ByteWriter request = wire::beginRequest();
        wire::writePoll(request);
        for (const std::string& name : batch) {
            wire::writeRegisterCommand(request, findCommand(name).second, name);
        }
        const std::size_t most =
            wire::pollReplySize(commands.size()) + batch.size() * wire::kLongestReply;
        const Bytes answer = on.exchange(request.bytes(), doing, most);
        ByteReader reader(answer);
        all = toReports(wire::readPollReply(reader));
        for (const std::string& name : batch) {
            if (!wire::readRegisterCommandReply(reader, findCommand(name).second)) {
                throw UnexpectedAnswer(name + " to be found again", "a refusal");
            }
        }
        reader.expectEnd();
    });
    std::copy_if(all.begin(), all.end(), std::back_inserter(reports), [&](const auto& report) {
        return std::find(batch.begin(), batch.end(), report.name) != batch.end();
    });
}

std::vector<CommandReport> Client::Session::toReports(
    const std::vector<wire::PollEntry>& entries) const {
    std::vector<CommandReport> reports;
    for (const wire::PollEntry& entry : entries) {
        const auto command = std::find_if(commands.begin(), commands.end(), [&](const auto& known) {
            return known.second == entry.number;
        });
        if (command == commands.end()) {
            throw UnexpectedAnswer("a poll of registered commands",
                                   "number " + std::to_string(entry.number));
        }
        reports.push_back({command->first, entry.state});
    }
    return reports;
}

} // namespace orvane::velmar
