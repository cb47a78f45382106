#include "velmar/Releasing.h"

#include <cstddef>
#include <map>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "velmar/Batches.h"

namespace orvane::velmar {

namespace {

using detail::ByteReader;
using detail::Bytes;
using detail::ByteWriter;
using detail::Connection;
using detail::HeldCommands;
using Kind = ReleaseStep::Kind;

Cost costOf(const ReleaseStep& step) {
    switch (step.kind) {
    case Kind::Register:
        return {wire::registerCommandSize(step.command), wire::kLongestReply};
    case Kind::Unregister:
        return {wire::kUnregisterSize, wire::kLongestReply};
    case Kind::End:
        break;
    }
    return {wire::kRunSize, 0};
}

void write(ByteWriter& request, const ReleaseStep& step) {
    switch (step.kind) {
    case Kind::Register:
        wire::writeRegisterCommand(request, step.number, step.command);
        break;
    case Kind::End:
        wire::writeRun(request, step.number, Action::End);
        break;
    case Kind::Unregister:
        wire::writeUnregisterCommand(request, step.number);
        break;
    }
}

void takeReply(ByteReader& reader, const ReleaseStep& step, HeldCommands& held) {
    switch (step.kind) {
    case Kind::Register:
        // A command that the simulator does not have is not down.
        if (!wire::readRegisterCommandReply(reader, step.number)) {
            held.forget(step.command);
        }
        break;
    case Kind::End:
        held.end(step.command);
        break;
    case Kind::Unregister:
        wire::readUnregisterCommandReply(reader, step.number);
        break;
    }
}

using Uncertain = std::map<wire::Number, std::string>;

// The simulator runs a command that is down in every frame, so a poll in a later frame than its
// registration sees it.
std::vector<wire::Number> commandsDown(Connection& on, const std::string& doing,
                                       const Uncertain& uncertain) {
    ByteWriter request = wire::beginRequest();
    wire::writePoll(request);
    const Bytes answer = on.exchange(request.bytes(), doing, wire::pollReplySize(uncertain.size()));
    ByteReader reader(answer);
    std::vector<wire::Number> down;
    for (const wire::PollEntry& entry : wire::readPollReply(reader)) {
        if (entry.state == CommandState::Down && uncertain.contains(entry.number)) {
            down.push_back(entry.number);
        }
    }
    reader.expectEnd();
    return down;
}

void endIfDown(Connection& on, const std::string& doing, const Uncertain& uncertain,
               HeldCommands& held) {
    std::vector<ReleaseStep> steps;
    for (const wire::Number number : commandsDown(on, doing, uncertain)) {
        const std::string& command = uncertain.at(number);
        const int times = held.all().at(command).perhaps;
        steps.insert(steps.end(), static_cast<std::size_t>(times), {Kind::End, number, command});
    }
    // Else every later poll on this connection would report them.
    for (const auto& [number, command] : uncertain) {
        steps.push_back({Kind::Unregister, number, command});
    }
    takeSteps(on, doing, steps, held);
    for (const auto& [number, command] : uncertain) {
        held.forget(command);
    }
}

} // namespace

void takeSteps(Connection& on, const std::string& doing, std::span<const ReleaseStep> steps,
               HeldCommands& held) {
    std::vector<Cost> costs;
    for (const ReleaseStep& step : steps) {
        costs.push_back(costOf(step));
    }
    for (const Batch batch : cutIntoRequests(costs, kEmpty)) {
        const auto some = steps.subspan(batch.begin, batch.end - batch.begin);
        ByteWriter request = wire::beginRequest();
        for (const ReleaseStep& step : some) {
            write(request, step);
        }
        const Bytes answer = on.exchange(request.bytes(), doing, some.size() * wire::kLongestReply);
        ByteReader reader(answer);
        for (const ReleaseStep& step : some) {
            takeReply(reader, step, held);
        }
        reader.expectEnd();
    }
}

void endByName(Connection& on, const std::string& doing, HeldCommands& held,
               wire::Number firstNumber) {
    std::vector<ReleaseStep> steps;
    Uncertain uncertain;
    wire::Number number = firstNumber;
    for (const auto& [command, times] : held.all()) {
        steps.push_back({Kind::Register, number, command});
        steps.insert(steps.end(), static_cast<std::size_t>(times.begun),
                     {Kind::End, number, command});
        if (times.perhaps > 0) {
            uncertain.emplace(number, command);
        } else {
            steps.push_back({Kind::Unregister, number, command});
        }
        ++number;
    }
    takeSteps(on, doing, steps, held);
    std::erase_if(uncertain, [&](const auto& each) { return !held.all().contains(each.second); });
    if (!uncertain.empty()) {
        endIfDown(on, doing, uncertain, held);
    }
}

} // namespace orvane::velmar
