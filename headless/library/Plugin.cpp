#include "orvane/headless/Plugin.h"

#include <bit>
#include <utility>

#include "headless/library/PluginState.h"

namespace orvane::headless {

Plugin::Plugin(std::unique_ptr<State> pluginState) : state(std::move(pluginState)) {}

Plugin::~Plugin() = default;

std::string Plugin::name() const {
    return state->host.Texts().name;
}

std::string Plugin::signature() const {
    return state->host.Texts().signature;
}

std::string Plugin::description() const {
    return state->host.Texts().description;
}

bool Plugin::isEnabled() const {
    return state->host.IsEnabled();
}

void Plugin::enable() {
    withPublicErrors([this] { state->host.Enable(); });
}

void Plugin::disable() {
    state->host.Disable();
}

void Plugin::send(int message, void* parameter) {
    state->host.SendMessage(message, parameter);
}

void Plugin::send(int message, std::intptr_t number) {
    send(message, std::bit_cast<void*>(number));
}

} // namespace orvane::headless
