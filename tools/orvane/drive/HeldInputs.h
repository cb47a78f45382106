#pragma once

#include "tools/orvane/drive/Profile.h"

#include <set>
#include <span>
#include <string>
#include <vector>

#include "orvane/tarnel/Client.h"

namespace orvane::tool {

// Which held commands of a session are down. The server does not end them when its client goes.
//
// It may also forget that it holds them: it does so with each connection that ends. Such commands
// are lost, and can only be ended by their names. Borrows the profile.
class HeldInputs final {
public:
    explicit HeldInputs(const Profile& profile);

    // To be called before items are sent, since they may arrive although the answer does not.
    void Sending(std::span<const tarnel::Item> items);
    // When they were answered.
    void Sent(std::span<const tarnel::Item> items);
    // The connection that the commands were begun on is gone, but another took its place.
    void Lose();
    // The connection is gone for good: nothing counts as down any more, but as lost.
    void GiveUp();

    // What ends those that are down.
    std::vector<tarnel::Item> Releases() const;
    // Those that are lost and not down again. They count as ended then.
    std::vector<std::string> TakeLost();

private:
    const ProfileInput* find(tarnel::ActionId action) const;

    const Profile& profile;
    std::set<tarnel::ActionId> down;
    std::set<tarnel::ActionId> lost;
};

} // namespace orvane::tool
