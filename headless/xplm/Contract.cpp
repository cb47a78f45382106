#include "headless/xplm/Contract.h"

namespace headless {

namespace {

enum class Verdict { Ordinary, Note, Breach };

// Where the SDK ignores a null dataref.
bool takesNull(const RefusedCall& refused) {
    return refused.detail == "dataref" && (refused.function.starts_with("XPLMGetData") ||
                                           refused.function.starts_with("XPLMSetData") ||
                                           refused.function == "XPLMUnregisterDataAccessor");
}

Verdict verdictOn(const RefusedCall& refused) {
    switch (refused.reason) {
    case Refusal::UnknownName:
    case Refusal::Ordered:
        return Verdict::Ordinary;
    case Refusal::NullHandle:
        return takesNull(refused) ? Verdict::Note : Verdict::Breach;
    case Refusal::NullText:
    case Refusal::UnknownHandle:
    case Refusal::StaleHandle:
    case Refusal::UnbalancedEnd:
    case Refusal::WrongMoment:
        return Verdict::Breach;
    default:
        return Verdict::Note;
    }
}

} // namespace

void Contract::Refused(const RefusedCall& refused) {
    const Verdict verdict = verdictOn(refused);
    const XPLMPluginID plugin = context.Plugin();
    if (verdict == Verdict::Ordinary || plugin == XPLM_PLUGIN_XPLANE) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (!reported.emplace(plugin, refused.function, refused.reason).second) {
            return;
        }
    }
    const std::string file = fileOf(plugin);
    if (file.empty()) {
        return;
    }
    const std::string text = file + ": " + refused.function + ": " + refused.detail + ": " +
                             CallRecorder::Describe(refused.reason);
    if (verdict == Verdict::Breach) {
        notices.Warn(text);
    } else {
        notices.Note(text);
    }
}

void Contract::LeftBehind(XPLMPluginID plugin, std::span<const Leftover> all, bool areTakenBack) {
    const std::string file = fileOf(plugin);
    std::string list;
    for (const Leftover& left : all) {
        if (left.count > 0) {
            list += list.empty() ? "" : ", ";
            list +=
                std::string(left.kind) + " (" + left.function + "): " + std::to_string(left.count);
        }
    }
    // A plugin that is stopped repeatedly leaves the same each time.
    if (file.empty() || list.empty() || !stopped.emplace(file, areTakenBack).second) {
        return;
    }
    if (areTakenBack) {
        notices.Note(file + ": left at its stop, taken back by the simulator: " + list);
    } else {
        notices.Warn(file + ": left at its stop: " + list);
    }
}

std::string Contract::fileOf(XPLMPluginID plugin) const {
    const PluginTexts* const texts = plugins.TextsOf(plugin);
    return texts == nullptr ? std::string() : texts->path;
}

} // namespace headless
