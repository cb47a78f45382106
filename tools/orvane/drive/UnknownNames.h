#pragma once

#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/drive/Profile.h"

namespace orvane::tool {

// The names of a profile that the simulator does not have, in order. Tarnel silently accepts
// unknown names, so this asks in Velmar.
std::vector<ExpectedName> findUnknownNames(velmar::Client& client, const Profile& profile);

} // namespace orvane::tool
