#pragma once

#include <string>
#include <vector>

#include "XPLMInstance.h"
#include "headless/xplm/OwnedObjects.h"

namespace headless {

// An object that a plugin placed in the scenery, as last positioned.
struct SceneryInstance {
    XPLMObjectRef object = nullptr;
    std::vector<std::string> datarefs;
    XPLMDrawInfoDouble_t position{};
    // One for each dataref.
    std::vector<float> values;
};

using Instances = OwnedObjects<SceneryInstance>;

} // namespace headless
