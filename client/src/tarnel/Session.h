#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>

#include "Link.h"
#include "orvane/tarnel/Client.h"

namespace orvane::tarnel {

// What a Client knows: the definitions, and what the server will not forget on this connection.
class Client::Session final {
public:
    explicit Session(Options options);

    detail::Link& connection() { return link; }
    void onAircraftChanged(std::function<void(std::uint32_t)> callback) {
        aircraftChanged = std::move(callback);
    }

    Version version();
    Answer define(Definitions newDefinitions);
    Answer exchange(std::span<const Item> items);
    void reconnect();

private:
    void declare(detail::Connection& on);
    void sendDefinitions(detail::Connection& on, const std::string& doing);
    // Whether the server would report a command of these definitions under a former identifier, or
    // a former command under an identifier of theirs.
    bool needsNewConnection(const Definitions& wanted) const;
    void checkItems(std::span<const Item> items) const;
    void noteAircraft(std::uint32_t id);

    Answer readAnswer(std::span<const std::uint8_t> payload) const;

    detail::Link link;
    std::shared_ptr<const Definitions> definitions;
    // Whether the server has them, and its answer when it last got them.
    bool isDefined = false;
    Answer declared;
    // Commands that were ever observed on this connection, with the identifier they had first; and
    // the reverse.
    std::unordered_map<std::string, OutputId> observed;
    std::unordered_map<OutputId, std::string> observedAs;
    std::optional<std::uint32_t> aircraft;
    std::function<void(std::uint32_t)> aircraftChanged;
};

} // namespace orvane::tarnel
