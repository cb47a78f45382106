#include "headless/xplm/scenery/Objects.h"

#include <unistd.h>

#include <utility>

namespace headless {

XPLMObjectRef Objects::Load(const char* path) {
    const std::string file = path == nullptr ? std::string() : folder.Absolute(path);
    const bool readable = !file.empty() && ::access(file.c_str(), R_OK) == 0;
    return readable ? objects.Add({file}) : nullptr;
}

void Objects::LoadLater(const char* path, XPLMObjectLoaded_f callback, void* refcon) {
    if (path != nullptr && callback != nullptr) {
        pending.push_back({path, callback, refcon, context.Plugin()});
    }
}

void Objects::FinishLoads() {
    if (pending.empty()) {
        return;
    }
    for (const Pending& load : std::exchange(pending, {})) {
        if (context.IsActive(load.owner)) {
            const PluginContext::Call call(context, load.owner, "object loaded");
            call.Into(load.callback, Load(load.path.c_str()), load.refcon);
        }
    }
}

std::size_t Objects::DropOf(XPLMPluginID plugin) {
    std::erase_if(pending, [&](const Pending& load) { return load.owner == plugin; });
    return objects.DropOf(plugin);
}

} // namespace headless
