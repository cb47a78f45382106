#include "headless/xplm/planes/Aircraft.h"

#include <algorithm>
#include <utility>

namespace headless {

namespace {

constexpr const char* kUsersModel = "Aircraft/Orvane Trainer/Orvane Trainer.acf";

} // namespace

Aircraft::Aircraft(PluginRegistry& pluginRegistry, PluginContext& pluginContext,
                   const SystemFolder& systemFolder, CallRecorder& callRecorder)
    : plugins(pluginRegistry),
      context(pluginContext),
      folder(systemFolder),
      recorder(callRecorder),
      models(kMost) {
    models[XPLM_USER_AIRCRAFT] = kUsersModel;
}

void Aircraft::LoadUsers(const std::string& path) {
    AnnounceUnloaded();
    models[XPLM_USER_AIRCRAFT] = path;
    AnnounceLoaded();
}

void Aircraft::AnnounceUnloaded() {
    plugins.Broadcast(XPLM_MSG_PLANE_UNLOADED, nullptr);
}

void Aircraft::AnnounceLoaded() {
    plugins.Broadcast(XPLM_MSG_PLANE_LOADED, nullptr);
    plugins.Broadcast(XPLM_MSG_LIVERY_LOADED, nullptr);
}

std::string Aircraft::ModelOf(int index) const {
    const bool exists = index >= 0 && index < kMost;
    const std::string model = exists ? models[static_cast<std::size_t>(index)] : std::string();
    return model.empty() ? model : folder.Absolute(model);
}

bool Aircraft::Acquire(char** wantedModels, XPLMPlanesAvailable_f callback, void* refcon) {
    if (controller != XPLM_NO_PLUGIN_ID && controller != context.Plugin()) {
        if (callback != nullptr) {
            waiting.push_back({callback, refcon, context.Plugin()});
        }
        plugins.SendFromSimulator(controller, XPLM_MSG_RELEASE_PLANES, nullptr);
        return false;
    }
    controller = context.Plugin();
    for (int index = 1; wantedModels != nullptr && *wantedModels != nullptr && index < kMost;
         ++index) {
        SetModel(index, *wantedModels++);
    }
    return true;
}

void Aircraft::Release() {
    if (isController()) {
        release();
    }
}

void Aircraft::SetActive(int count) {
    if (isController()) {
        active = std::clamp(count, 1, kMost);
        plugins.Broadcast(XPLM_MSG_AIRPLANE_COUNT_CHANGED, nullptr);
    }
}

void Aircraft::SetModel(int index, const char* path) {
    if (isController() && index > XPLM_USER_AIRCRAFT && index < kMost && path != nullptr) {
        models[static_cast<std::size_t>(index)] = path;
    }
}

std::size_t Aircraft::DropOf(XPLMPluginID plugin) {
    std::erase_if(waiting, [&](const Waiting& one) { return one.owner == plugin; });
    const bool controls = controller == plugin;
    if (controls) {
        release();
    }
    return controls ? 1 : 0;
}

bool Aircraft::isController() {
    const bool controls = controller == context.Plugin();
    if (!controls) {
        recorder.Refuse(Refusal::NotRegistered, "the planes are not acquired");
    }
    return controls;
}

void Aircraft::release() {
    controller = XPLM_NO_PLUGIN_ID;
    active = 1;
    for (const Waiting& waiter : std::exchange(waiting, {})) {
        if (context.IsActive(waiter.owner)) {
            const PluginContext::Call call(context, waiter.owner, "planes available");
            call.Into(waiter.callback, waiter.refcon);
        }
    }
}

} // namespace headless
