#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The callbacks of one kind that plugins registered, oldest first. An entry has a `callback`, an
// `owner`, which is the plugin that registered it, and operator==.
template <class Entry>
class CallbackList final {
public:
    // `kindOfCallback` names it in refusals.
    CallbackList(PluginContext& pluginContext, CallRecorder& callRecorder,
                 const char* kindOfCallback)
        : context(pluginContext), recorder(callRecorder), kind(kindOfCallback) {}
    CallbackList(const CallbackList&) = delete;
    CallbackList& operator=(const CallbackList&) = delete;

    // For the calling plugin. False without a callback; records the refusal.
    bool Add(Entry entry) {
        if (entry.callback == nullptr) {
            recorder.Refuse(Refusal::NullHandle, "callback");
            return false;
        }
        entry.owner = context.Plugin();
        entries.push_back(entry);
        return true;
    }

    // False if the calling plugin did not register it; records the refusal.
    bool Remove(Entry entry) {
        entry.owner = context.Plugin();
        const auto found = std::find(entries.begin(), entries.end(), entry);
        if (found == entries.end()) {
            recorder.Refuse(Refusal::NotRegistered, kind);
            return false;
        }
        entries.erase(found);
        return true;
    }

    // Returns how many it had.
    std::size_t DropOf(XPLMPluginID plugin) {
        return std::erase_if(entries, [&](const Entry& entry) { return entry.owner == plugin; });
    }

    bool Has(const Entry& entry) const {
        return std::find(entries.begin(), entries.end(), entry) != entries.end();
    }
    // A copy: callbacks may come and go while they are called; ask for each whether it is still
    // there.
    std::vector<Entry> All() const { return entries; }

private:
    PluginContext& context;
    CallRecorder& recorder;
    const char* kind;
    std::vector<Entry> entries;
};

} // namespace headless
