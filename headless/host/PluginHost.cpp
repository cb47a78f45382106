#include "headless/host/PluginHost.h"

#include <dlfcn.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <utility>

#include "headless/host/NoOpLibrary.h"
#include "headless/host/PluginCheck.h"

namespace headless {

namespace {

// The SDK guarantees the plugin 256 bytes for each text.
using StartText = std::array<char, 256>;

std::string absolutePath(const std::string& path) {
    // If a path has a slash in it, dlopen takes it as it is and does not search library folders.
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(path, error);
    if (error) {
        throw PluginError(path + ": there is no such plugin");
    }
    return resolved.string();
}

std::string lastDlError() {
    const char* text = ::dlerror();
    return text == nullptr ? "unknown reason" : text;
}

template <class Function>
void resolve(void* library, const std::string& file, const char* symbol, Function& target) {
    target = reinterpret_cast<Function>(::dlsym(library, symbol));
    if (target == nullptr) {
        throw PluginError(file + ": not a plugin: it has no " + symbol);
    }
}

bool isMapped(const std::string& file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(file) != std::string::npos) {
            return true;
        }
    }
    return false;
}

std::string upToZero(const StartText& text) {
    const std::string all(text.data(), text.size());
    return all.substr(0, all.find('\0'));
}

} // namespace

PluginHost::PluginHost(Simulator& hostingSimulator, const std::string& path, bool strict)
    : simulator(hostingSimulator), file(absolutePath(path)) {
    requireNames(strict);
    load();
}

PluginHost::PluginHost(Simulator& hostingSimulator, std::string name,
                       const PluginEntryPoints& linked)
    : simulator(hostingSimulator), file(std::move(name)), entryPoints(linked) {}

PluginHost::~PluginHost() {
    Unload();
}

void PluginHost::Start() {
    requireLoaded();
    if (started) {
        throw PluginError(file + ": the plugin is started already");
    }
    enroll();
    if (!callStart()) {
        dismiss();
        throw PluginError(file + ": the plugin refused to start");
    }
    simulator.Plugins().Describe(id, texts);
    simulator.Plugins().MarkEnabled(id, false);
    started = true;
}

void PluginHost::Enable() {
    if (!started || enabled) {
        throw PluginError(
            file + (started ? ": the plugin is enabled already" : ": the plugin is not started"));
    }
    if (!enablePlugin()) {
        throw PluginError(file + ": the plugin refused to be enabled");
    }
}

void PluginHost::Disable() {
    if (enabled) {
        enabled = false;
        const PluginContext::Call call(simulator.Context(), id, "XPluginDisable");
        call.Into(entryPoints.disable);
        simulator.Plugins().MarkEnabled(id, false);
    }
}

void PluginHost::Stop() {
    if (started) {
        leave();
        dismiss();
    }
}

void PluginHost::SendMessage(int message, void* parameter) {
    simulator.Plugins().SendFromSimulator(id, message, parameter);
}

void PluginHost::SendLoadedMessages() {
    for (const int message : {XPLM_MSG_PLANE_LOADED, XPLM_MSG_LIVERY_LOADED,
                              XPLM_MSG_AIRPORT_LOADED, XPLM_MSG_SCENERY_LOADED}) {
        SendMessage(message, nullptr);
    }
}

bool PluginHost::Unload() {
    leave();
    const bool wasMapped = library != nullptr;
    if (wasMapped) {
        // A stopped plugin has no id, but calls from its destructors must be charged to it.
        enroll();
        withCallsRefused("destructors", [this] { ::dlclose(library); });
        library = nullptr;
    }
    entryPoints = {};
    dismiss();
    const bool gone = !wasMapped || !isMapped(file);
    if (!gone) {
        simulator.Notices().Warn(file + ": stays in the process after it was unloaded");
    }
    return gone;
}

void PluginHost::enroll() {
    if (id == XPLM_NO_PLUGIN_ID) {
        id = simulator.Plugins().AddLoaded(
            file, {.receive = [this](XPLMPluginID from, int message,
                                     void* parameter) { receive(from, message, parameter); },
                   .enable = [this] { return enablePlugin(); },
                   .disable = [this] { Disable(); }});
    }
}

void PluginHost::leave() {
    if (started) {
        Disable();
        started = false;
        const PluginContext::Call call(simulator.Context(), id, "XPluginStop");
        call.Into(entryPoints.stop);
    }
    if (id != XPLM_NO_PLUGIN_ID) {
        simulator.DropRegistrations(id);
    }
}

void PluginHost::dismiss() {
    if (id != XPLM_NO_PLUGIN_ID) {
        simulator.DropRegistrations(id);
        simulator.Plugins().RemovePlugin(id);
        id = XPLM_NO_PLUGIN_ID;
    }
}

// Runs within a PluginContext::Call that the registry made.
void PluginHost::receive(XPLMPluginID from, int message, void* parameter) const noexcept {
    if (started) {
        entryPoints.receiveMessage(from, message, parameter);
    }
}

bool PluginHost::callStart() {
    StartText name{};
    StartText signature{};
    StartText description{};
    const PluginContext::Call call(simulator.Context(), id, "XPluginStart");
    const bool agreed =
        call.Into(entryPoints.start, name.data(), signature.data(), description.data()) == 1;
    texts = {upToZero(name), upToZero(signature), upToZero(description), file};
    return agreed;
}

// A plugin counts as enabled during its own XPluginEnable and XPluginDisable.
bool PluginHost::enablePlugin() {
    simulator.Plugins().MarkEnabled(id, true);
    const PluginContext::Call call(simulator.Context(), id, "XPluginEnable");
    enabled = call.Into(entryPoints.enable) == 1;
    simulator.Plugins().MarkEnabled(id, enabled);
    return enabled;
}

void PluginHost::requireNames(bool strict) const {
    const PluginFile plugin(file);
    const PluginCheck check(plugin);
    if (!check.Missing().empty()) {
        throw PluginError(file + ": the plugin " + check.DescribeMissing());
    }
    if (strict && !check.NotSimulated().empty()) {
        throw PluginError(file + ": the plugin " + check.DescribeNotSimulated());
    }
    for (const std::string& name : plugin.Needed()) {
        // The SDK's functions are in the process already, so an empty library is enough.
        if (PluginCheck::IsSdkLibrary(name)) {
            loadNoOpLibrary(name, {"headless_nothing"});
        }
    }
}

void PluginHost::load() {
    // Its constructors may already register things.
    enroll();
    withCallsRefused("constructors",
                     [this] { library = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL); });
    if (library == nullptr) {
        dismiss();
        throw PluginError(lastDlError());
    }
    try {
        resolveEntryPoints();
    } catch (const PluginError&) {
        dismiss();
        ::dlclose(library);
        throw;
    }
}

void PluginHost::withCallsRefused(const char* callback, const std::function<void()>& action) {
    const PluginContext::Call call(simulator.Context(), id, callback);
    const auto former = simulator.Threads().SetWatch([this, callback](const char* function) {
        simulator.Recorder().Refuse(Refusal::WrongMoment, function, callback);
    });
    // An exception that leaves a constructor counts as a crash of the plugin.
    [&]() noexcept { action(); }();
    simulator.Threads().SetWatch(former);
}

void PluginHost::resolveEntryPoints() {
    resolve(library, file, "XPluginStart", entryPoints.start);
    resolve(library, file, "XPluginStop", entryPoints.stop);
    resolve(library, file, "XPluginEnable", entryPoints.enable);
    resolve(library, file, "XPluginDisable", entryPoints.disable);
    resolve(library, file, "XPluginReceiveMessage", entryPoints.receiveMessage);
}

void PluginHost::requireLoaded() const {
    if (entryPoints.start == nullptr) {
        throw PluginError(file + ": the plugin is not loaded");
    }
}

} // namespace headless
