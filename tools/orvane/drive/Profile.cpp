#include "tools/orvane/drive/Profile.h"

#include <algorithm>

#include "tools/orvane/datarefs/DatarefArgument.h"

namespace orvane::tool {

bool Profile::HasInputsOnOwnNames() const {
    return std::any_of(expectedNames.begin(), expectedNames.end(),
                       [](const ExpectedName& each) { return isOwnName(each.name); });
}

const ProfileInput* Profile::FindInput(const std::string& name) const {
    const auto found = std::find_if(inputs.begin(), inputs.end(),
                                    [&](const ProfileInput& each) { return each.name == name; });
    return found == inputs.end() ? nullptr : &*found;
}

} // namespace orvane::tool
