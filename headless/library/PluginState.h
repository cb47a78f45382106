#pragma once

#include <utility>

#include "headless/host/PluginHost.h"
#include "orvane/headless/Plugin.h"

namespace orvane::headless {

// Converts the host's exceptions to the library's.
template <class Action>
void withPublicErrors(Action&& action) {
    try {
        action();
    } catch (const ::headless::PluginError& error) {
        throw PluginError(error.what());
    }
}

struct Plugin::State {
    template <class... Arguments>
    explicit State(Arguments&&... arguments) : host(std::forward<Arguments>(arguments)...) {}

    ::headless::PluginHost host;
};

} // namespace orvane::headless
