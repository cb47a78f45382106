#include "tools/orvane/drive/HeldInputs.h"

#include <algorithm>

namespace orvane::tool {

HeldInputs::HeldInputs(const Profile& drivenProfile) : profile(drivenProfile) {}

const ProfileInput* HeldInputs::find(tarnel::ActionId action) const {
    const auto found =
        std::find_if(profile.inputs.begin(), profile.inputs.end(), [&](const ProfileInput& each) {
            return each.action == action && !each.heldCommands.empty();
        });
    return found == profile.inputs.end() ? nullptr : &*found;
}

void HeldInputs::Sending(std::span<const tarnel::Item> items) {
    for (const tarnel::Item& item : items) {
        if (item.value == 1 && find(item.action) != nullptr) {
            down.insert(item.action);
        }
    }
}

void HeldInputs::Sent(std::span<const tarnel::Item> items) {
    for (const tarnel::Item& item : items) {
        if (item.value != 1) {
            down.erase(item.action);
        }
    }
}

void HeldInputs::Lose() {
    lost.insert(down.begin(), down.end());
}

void HeldInputs::GiveUp() {
    Lose();
    down.clear();
}

std::vector<tarnel::Item> HeldInputs::Releases() const {
    std::vector<tarnel::Item> items;
    for (const tarnel::ActionId action : down) {
        items.push_back({action, find(action)->releasedBy});
    }
    return items;
}

std::vector<std::string> HeldInputs::TakeLost() {
    std::vector<std::string> names;
    for (auto action = lost.begin(); action != lost.end();) {
        if (down.contains(*action)) {
            ++action;
            continue;
        }
        const std::vector<std::string>& commands = find(*action)->heldCommands;
        names.insert(names.end(), commands.begin(), commands.end());
        action = lost.erase(action);
    }
    return names;
}

} // namespace orvane::tool
