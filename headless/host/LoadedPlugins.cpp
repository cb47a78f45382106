#include "headless/host/LoadedPlugins.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace headless {

LoadedPlugins::LoadedPlugins(Simulator& hostingSimulator, std::vector<PluginPlace> pluginPlaces,
                             bool strict)
    : simulator(hostingSimulator), isStrict(strict) {
    for (PluginPlace& place : pluginPlaces) {
        // The system would load it only once.
        for (const Entry& entry : entries) {
            if (std::filesystem::equivalent(entry.place.file, place.file)) {
                throw PluginError(place.file + ": the plugin is given twice");
            }
        }
        entries.push_back({std::move(place)});
    }
}

LoadedPlugins::~LoadedPlugins() {
    Unload();
}

void LoadedPlugins::Start() {
    for (Entry& entry : entries) {
        load(entry);
    }
    for (const Entry& entry : entries) {
        // An earlier plugin may have enabled it.
        if (!entry.host->IsEnabled()) {
            entry.host->Enable();
        }
    }
}

PluginHost& LoadedPlugins::Reload(const std::string& name) {
    Entry& entry = entries[indexOf(name)];
    if (entry.host != nullptr && !entry.host->Unload()) {
        entry.host.reset();
        throw PluginError(entry.place.file +
                          ": the plugin stays in the process, so it cannot be loaded afresh");
    }
    load(entry);
    entry.host->Enable();
    return *entry.host;
}

std::vector<std::string> LoadedPlugins::Unload() {
    std::for_each(entries.rbegin(), entries.rend(), [](const Entry& entry) {
        if (entry.host != nullptr) {
            entry.host->Disable();
        }
    });
    std::vector<std::string> staying;
    std::for_each(entries.rbegin(), entries.rend(), [&](Entry& entry) {
        if (entry.host != nullptr && !entry.host->Unload()) {
            staying.push_back(entry.place.file);
        }
        entry.host.reset();
    });
    return staying;
}

PluginHost& LoadedPlugins::Find(const std::string& name) const {
    const Entry& entry = entries[indexOf(name)];
    if (entry.host == nullptr) {
        throw PluginError(entry.place.file + ": the plugin is not loaded");
    }
    return *entry.host;
}

void LoadedPlugins::Redirect(const std::string& function, const void* target) {
    redirected.emplace_back(function, target);
    for (const Entry& entry : entries) {
        if (entry.host != nullptr) {
            entry.host->Redirect(function, target);
        }
    }
}

std::string LoadedPlugins::Describe() const {
    std::string text;
    for (const Entry& entry : entries) {
        text += text.empty() ? "" : "; ";
        if (entry.host == nullptr || !entry.host->IsStarted()) {
            text += entry.place.name + " stopped";
            continue;
        }
        text += std::to_string(entry.host->Id()) + " " + entry.place.name +
                (entry.host->IsEnabled() ? " enabled" : " disabled");
    }
    return text;
}

bool LoadedPlugins::Entry::IsCalled(const std::string& name) const {
    return name.empty() || place.name == name || place.file == name ||
           (host != nullptr && (host->Texts().signature == name || host->Texts().name == name));
}

std::size_t LoadedPlugins::indexOf(const std::string& name) const {
    const auto isCalled = [&](const Entry& entry) { return entry.IsCalled(name); };
    const auto found = std::find_if(entries.begin(), entries.end(), isCalled);
    if (found == entries.end()) {
        throw PluginError("no plugin is called \"" + name + "\"");
    }
    if (std::any_of(std::next(found), entries.end(), isCalled)) {
        throw PluginError(name.empty() ? "there are several plugins; name one of them"
                                       : "several plugins are called \"" + name +
                                             "\"; name one by its path");
    }
    return static_cast<std::size_t>(found - entries.begin());
}

void LoadedPlugins::load(Entry& entry) const {
    entry.host.reset();
    entry.host = std::make_unique<PluginHost>(simulator, entry.place.file, isStrict);
    for (const auto& [function, target] : redirected) {
        entry.host->Redirect(function, target);
    }
    entry.host->Start();
}

} // namespace headless
