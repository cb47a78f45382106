#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvane/tarnel/Input.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

// One [[input]] of a profile, with the facts about it that a record does not show.
struct ProfileRecord {
    tarnel::Input input;
    bool isAxis = false;
    bool isHeldCommand = false;
    std::optional<Motion> motion;
    std::vector<ExpectedName> names; // whose user is left open
    std::string way;
    std::optional<std::int32_t> element;
};

// Reads all but "name" and "action", which are shared with other inputs. Empty when the target is
// wrong; what else is wrong is only added to the problems.
std::optional<ProfileRecord> readProfileInput(ProfileTable table, tarnel::ActionId action);

} // namespace orvane::tool
