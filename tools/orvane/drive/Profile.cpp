#include "tools/orvane/drive/Profile.h"

#include <algorithm>

namespace orvane::tool {

const ProfileInput* Profile::FindInput(const std::string& name) const {
    const auto found = std::find_if(inputs.begin(), inputs.end(),
                                    [&](const ProfileInput& each) { return each.name == name; });
    return found == inputs.end() ? nullptr : &*found;
}

} // namespace orvane::tool
