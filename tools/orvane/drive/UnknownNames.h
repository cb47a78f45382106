#pragma once

#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/drive/Profile.h"

namespace orvane::tool {

// Those names of a profile that the simulator does not have, in their order. The protocol of a
// session takes an unknown name without a word, so the other one is asked.
std::vector<ExpectedName> findUnknownNames(velmar::Client& client, const Profile& profile);

} // namespace orvane::tool
