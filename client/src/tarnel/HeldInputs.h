#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "HeldCommands.h"
#include "orvane/tarnel/Client.h"

namespace orvane::tarnel {

// Which held commands of the definitions are down, judging by the values sent. An input with a
// dataref condition may be up or down after its first press, since the server may skip values.
class HeldInputs final {
public:
    // For new definitions; all are up.
    void follow(const Definitions& definitions);

    // Called before values are sent: they may arrive even if no answer comes.
    void sending(std::span<const Item> items);
    // Called when they were answered.
    void sent(std::span<const Item> items);

    // Values that certainly end the commands that are certainly down. The others can only be ended
    // by name.
    std::vector<Item> releases() const;
    // Adds those that are not up.
    void addTo(detail::HeldCommands& held) const;
    void forgetAll();

private:
    enum class State { Up, Perhaps, Down };
    enum class Effect { None, Press, Release };

    struct HeldInput {
        Input input;
        State state = State::Up;
    };

    static Effect effectOf(const Input& input, std::int32_t value);
    // Whether the server reads a dataref to decide if it skips a value.
    static bool isConditional(const Input& input);
    template <typename Step>
    void forEach(std::span<const Item> items, Step step);

    std::vector<HeldInput> inputs;
    std::unordered_map<ActionId, std::vector<std::size_t>> byAction; // into `inputs`
};

} // namespace orvane::tarnel
