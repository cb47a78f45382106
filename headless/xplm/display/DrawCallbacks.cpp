#include "headless/xplm/display/DrawCallbacks.h"

#include <algorithm>

namespace headless {

bool DrawCallbacks::Register(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, bool before,
                             void* refcon) {
    if (callback == nullptr) {
        recorder.Refuse(Refusal::NullHandle, "callback");
        return false;
    }
    entries.push_back({callback, phase, before, refcon, context.Plugin()});
    return true;
}

bool DrawCallbacks::Unregister(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, bool before,
                               void* refcon) {
    const Entry wanted{callback, phase, before, refcon, context.Plugin()};
    const auto found = std::find(entries.begin(), entries.end(), wanted);
    if (found == entries.end()) {
        recorder.Refuse(Refusal::NotRegistered, "draw callback");
        return false;
    }
    entries.erase(found);
    return true;
}

std::size_t DrawCallbacks::DropOf(XPLMPluginID plugin) {
    return std::erase_if(entries, [&](const Entry& entry) { return entry.owner == plugin; });
}

} // namespace headless
