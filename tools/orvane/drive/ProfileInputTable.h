#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvane/tarnel/Input.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

// One [[input]] of a profile, and what its record does not show.
struct ProfileRecord {
    tarnel::Input input;
    bool isAxis = false;
    bool isHeldCommand = false;
    std::optional<Motion> motion;
    std::vector<ExpectedName> names; // without their user
    std::string mapping;
    std::optional<std::int32_t> element;
};

// Reads all but "name" and "action", which other inputs may share. Empty if the target is invalid;
// all other errors are only added to the problems.
std::optional<ProfileRecord> readProfileInput(ProfileTable table, tarnel::ActionId action);

} // namespace orvane::tool
