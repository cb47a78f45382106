#include "tarnel/Session.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "tarnel/Wire.h"
#include "velmar/Releasing.h"

namespace orvane::tarnel {

namespace {

using detail::Bytes;
using detail::Connection;
using detail::Link;
using detail::Repeat;

constexpr Repeat kAlways{.whenTorn = true, .whenLost = true};
// Items that arrived in pieces were not executed; after a lost connection they may be minutes old.
constexpr Repeat kWhenTorn{.whenTorn = true, .whenLost = false};

// As many as the server's buffer holds after the head of the message.
constexpr std::size_t kMaxItems = 30'000'000;

} // namespace

Client::Session::Session(Options options)
    : tracksHeld(options.releaseHeld), link(std::move(options), *this) {}

Client::Session::~Session() {
    link.closeForGood();
}

Version Client::Session::version() {
    const std::string doing = "asking for the version";
    Version version;
    link.carryOut(doing, kAlways, [&](Connection& on) {
        version =
            wire::readVersion(on.exchange(wire::versionRequest(), doing, wire::kVersionAnswerSize));
    });
    return version;
}

Answer Client::Session::define(Definitions newDefinitions) {
    try {
        link.releaseHere();
    } catch (...) {
        replaceDefinitions(std::move(newDefinitions));
        throw;
    }
    const bool mustReconnect = link.isConnected() && needsNewConnection(newDefinitions);
    replaceDefinitions(std::move(newDefinitions));
    if (mustReconnect) {
        link.renew();
    }
    const std::string doing = "defining";
    link.carryOut(doing, kAlways, [&](Connection& on) {
        // A new connection has already sent the definitions.
        if (!isDefined) {
            sendDefinitions(on, doing);
        }
    });
    noteAircraft(declared.aircraftId);
    return declared;
}

void Client::Session::replaceDefinitions(Definitions newDefinitions) {
    definitions = std::make_shared<const Definitions>(std::move(newDefinitions));
    isDefined = false;
    moveToLeftOver();
    if (tracksHeld) {
        heldInputs.follow(*definitions);
    }
}

Answer Client::Session::exchange(std::span<const Item> items) {
    checkItems(items);
    const std::string doing = "exchanging values";
    Answer answer;
    const Link::Outcome outcome = link.carryOut(doing, kWhenTorn, [&](Connection& on) {
        heldInputs.sending(items);
        answer = exchangeItems(on, doing, items);
        heldInputs.sent(items);
    });
    if (outcome == Link::Outcome::NotRepeated) {
        answer = declared;
    }
    noteAircraft(answer.aircraftId);
    return answer;
}

void Client::Session::declare(Connection& on) {
    observed.clear();
    observedAs.clear();
    if (definitions) {
        sendDefinitions(on, "repeating the definitions");
    }
}

void Client::Session::sendDefinitions(Connection& on, const std::string& doing) {
    const auto& outputs = definitions->outputs();
    for (const Output& output : outputs) {
        if (output.type() == OutputType::Command) {
            observed.emplace(output.name(), output.id());
            observedAs.emplace(output.id(), output.name());
        }
    }
    const Bytes payload =
        on.exchange(wire::definitionsRequest(*definitions), doing, wire::longestAnswer(outputs));
    declared = readAnswer(payload);
    isDefined = true;
}

Answer Client::Session::exchangeItems(Connection& on, const std::string& doing,
                                      std::span<const Item> items) const {
    return readAnswer(
        on.exchange(wire::dataRequest(items), doing, wire::longestAnswer(definitions->outputs())));
}

Answer Client::Session::readAnswer(std::span<const std::uint8_t> payload) const {
    Answer answer = wire::readAnswer(payload, definitions->outputs());
    answer.definitions = definitions;
    return answer;
}

std::vector<std::string> Client::Session::held() const {
    detail::HeldCommands all = leftOver;
    heldInputs.addTo(all);
    return all.names();
}

void Client::Session::release(Connection& on, const std::string& doing) {
    const std::vector<Item> releases = heldInputs.releases();
    if (!releases.empty()) {
        exchangeItems(on, doing, releases);
        heldInputs.sent(releases);
    }
    releaseByName(on, doing);
}

void Client::Session::releaseByName(Connection& on, const std::string& doing) {
    moveToLeftOver();
    velmar::endByName(on, doing, leftOver, 1);
}

void Client::Session::moveToLeftOver() {
    heldInputs.addTo(leftOver);
    heldInputs.forgetAll();
}

void Client::Session::reconnect() {
    link.reconnect();
    if (definitions) {
        noteAircraft(declared.aircraftId);
    }
}

bool Client::Session::needsNewConnection(const Definitions& wanted) const {
    const auto clashes = [this](const Output& output) {
        if (output.type() != OutputType::Command) {
            return false;
        }
        const auto id = observed.find(output.name());
        const auto name = observedAs.find(output.id());
        return (id != observed.end() && id->second != output.id()) ||
               (name != observedAs.end() && name->second != output.name());
    };
    return std::any_of(wanted.outputs().begin(), wanted.outputs().end(), clashes);
}

void Client::Session::checkItems(std::span<const Item> items) const {
    if (!definitions) {
        throw std::invalid_argument("values cannot be exchanged before anything is defined");
    }
    if (items.size() > kMaxItems) {
        throw std::invalid_argument(std::to_string(items.size()) +
                                    " items are more than the server can hold");
    }
    for (const Item& item : items) {
        if (!definitions->declares(item.action)) {
            throw std::invalid_argument("the action " + std::to_string(item.action) +
                                        " is not declared");
        }
    }
}

void Client::Session::noteAircraft(std::uint32_t id) {
    const bool changed = aircraft && *aircraft != id;
    aircraft = id;
    if (changed && aircraftChanged) {
        aircraftChanged(id);
    }
}

} // namespace orvane::tarnel
