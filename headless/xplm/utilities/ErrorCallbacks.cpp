#include "headless/xplm/utilities/ErrorCallbacks.h"

namespace headless {

namespace {

// What the SDK does not report as an error.
bool isOrdinary(Refusal reason) {
    return reason == Refusal::UnknownName || reason == Refusal::StaleHandle ||
           reason == Refusal::Ordered;
}

} // namespace

ErrorCallbacks::ErrorCallbacks(PluginContext& pluginContext, CallRecorder& callRecorder)
    : context(pluginContext) {
    callRecorder.AddObserver([this](const RefusedCall& refused) { report(refused); });
}

void ErrorCallbacks::report(const RefusedCall& refused) {
    const auto found = callbacks.find(context.Plugin());
    if (found == callbacks.end() || found->second == nullptr || isReporting ||
        isOrdinary(refused.reason)) {
        return;
    }
    const std::string message =
        refused.function + ": " + refused.detail + ": " + CallRecorder::Describe(refused.reason);
    isReporting = true;
    found->second(message.c_str());
    isReporting = false;
}

} // namespace headless
