#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "HeldCommands.h"
#include "ISession.h"
#include "Link.h"
#include "orvane/tarnel/Client.h"
#include "tarnel/HeldInputs.h"

namespace orvane::tarnel {

// What a Client knows: the definitions, the held commands, and what the server remembers on this
// connection.
class __attribute__((visibility("hidden"))) Client::Session final : public detail::ISession {
public:
    explicit Session(Options options);
    ~Session() override;

    detail::Link& connection() { return link; }
    void onAircraftChanged(std::function<void(std::uint32_t)> callback) {
        aircraftChanged = std::move(callback);
    }

    Version version();
    Answer define(Definitions newDefinitions);
    Answer exchange(std::span<const Item> items);
    void reconnect();

    void declare(detail::Connection& on) override;
    std::vector<std::string> held() const override;
    void release(detail::Connection& on, const std::string& doing) override;
    void releaseByName(detail::Connection& on, const std::string& doing) override;

private:
    void replaceDefinitions(Definitions newDefinitions);
    void sendDefinitions(detail::Connection& on, const std::string& doing);
    // Whether the server would report a command of these definitions under an earlier identifier,
    // or an earlier command under one of their identifiers.
    bool needsNewConnection(const Definitions& wanted) const;
    void checkItems(std::span<const Item> items) const;
    // Moves what the definitions hold to `leftOver`.
    void moveToLeftOver();
    void noteAircraft(std::uint32_t id);

    Answer exchangeItems(detail::Connection& on, const std::string& doing,
                         std::span<const Item> items) const;
    Answer readAnswer(std::span<const std::uint8_t> payload) const;

    const bool tracksHeld;
    HeldInputs heldInputs;
    // Can only be ended by name: held on another connection, or by replaced definitions.
    detail::HeldCommands leftOver;
    std::shared_ptr<const Definitions> definitions;
    // Whether the server has the definitions, and its last answer to them.
    bool isDefined = false;
    Answer declared;
    // All commands ever observed on this connection with their first identifier, and the reverse.
    std::unordered_map<std::string, OutputId> observed;
    std::unordered_map<OutputId, std::string> observedAs;
    std::optional<std::uint32_t> aircraft;
    std::function<void(std::uint32_t)> aircraftChanged;
    detail::Link link;
};

} // namespace orvane::tarnel
