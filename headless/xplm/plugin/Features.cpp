#include "headless/xplm/plugin/Features.h"

#include <algorithm>

namespace headless {

bool Features::Has(const char* feature) {
    if (feature == nullptr) {
        recorder.Refuse(Refusal::NullText, "feature");
        return false;
    }
    return std::find(kNames.begin(), kNames.end(), std::string(feature)) != kNames.end();
}

void Features::Enable(const char* feature, bool enable) {
    if (!Has(feature)) {
        recorder.Refuse(Refusal::UnknownName, feature == nullptr ? "feature" : feature);
    } else if (enable) {
        enabled.emplace(context.Plugin(), feature);
    } else {
        enabled.erase({context.Plugin(), feature});
    }
}

void Features::Enumerate(XPLMFeatureEnumerator_f enumerator, void* reference) {
    for (const char* name : kNames) {
        enumerator(name, reference);
    }
}

bool Features::IsEnabledFor(XPLMPluginID plugin, const char* feature) {
    return Has(feature) && enabled.count({plugin, feature}) != 0;
}

void Features::DropOf(XPLMPluginID plugin) {
    std::erase_if(enabled, [&](const auto& entry) { return entry.first == plugin; });
}

} // namespace headless
