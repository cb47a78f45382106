#include "headless/host/Failures.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "XPLMScenery.h"
#include "headless/host/NoOpLibrary.h"
#include "headless/lists/ParsedNumber.h"
#include "headless/xplm/FunctionTable.h"

namespace headless {

namespace {

constexpr const char* kAnswersZero = "headless_failure";

// Functions that answer -1 when they fail: no plugin, no navigation aid, no menu item.
constexpr std::string_view kAnswerMinusOne[] = {"XPLMAppendMenuItem",
                                                "XPLMAppendMenuItemWithCommand",
                                                "XPLMFindFirstNavAidOfType",
                                                "XPLMFindLastNavAidOfType",
                                                "XPLMFindNavAid",
                                                "XPLMFindPluginByPath",
                                                "XPLMFindPluginBySignature",
                                                "XPLMGetFirstNavAid",
                                                "XPLMGetGPSDestination",
                                                "XPLMGetMyID",
                                                "XPLMGetNextNavAid",
                                                "XPLMGetNthPlugin"};

std::intptr_t answerMinusOne() {
    return -1;
}

std::intptr_t answerProbeError() {
    return xplm_ProbeError;
}

// The replacement for a failing function. It accepts any arguments and leaves outputs alone.
const void* failureOf(std::string_view function) {
    if (function == "XPLMProbeTerrainXYZ") {
        return reinterpret_cast<const void*>(&answerProbeError);
    }
    if (std::ranges::find(kAnswerMinusOne, function) != std::end(kAnswerMinusOne)) {
        return reinterpret_cast<const void*>(&answerMinusOne);
    }
    // Zero as an integer, a pointer and a floating-point number.
    return ::dlsym(RTLD_DEFAULT, kAnswersZero);
}

} // namespace

Failures::Failures(Simulator& failingSimulator, LoadedPlugins& loadedPlugins,
                   const std::vector<std::string>& orders)
    : simulator(failingSimulator), plugins(loadedPlugins) {
    if (orders.empty()) {
        return;
    }
    loadNoOpLibrary("headless-failures.so", {kAnswersZero});
    for (const std::string& text : orders) {
        pending.push_back(parse(text));
        if (pending.back().left == 0) {
            begin(pending.back());
        }
    }
    std::erase_if(pending, [](const Order& order) { return order.left == 0; });
    if (!pending.empty()) {
        simulator.Threads().SetWatch([this](const char* function) { count(function); });
    }
}

Failures::~Failures() {
    simulator.Threads().SetWatch({});
}

Failures::Order Failures::parse(const std::string& text) {
    const std::size_t colon = text.find(':');
    Order order{text.substr(0, colon), 0};
    if (findSdkFunction(order.function) == nullptr) {
        throw std::invalid_argument("--fail " + text + ": \"" + order.function +
                                    "\" is not a function of the SDK");
    }
    if (colon != std::string::npos) {
        const std::string number = text.substr(colon + 1);
        const auto call = parsedNumber<std::int64_t>(number).value_or(0);
        if (call < 1) {
            throw std::invalid_argument("--fail " + text + ": \"" + number +
                                        "\" is not the number of a call; the first is 1");
        }
        order.left = call - 1;
    }
    return order;
}

void Failures::count(const char* function) {
    if (simulator.Context().Plugin() == XPLM_PLUGIN_XPLANE) {
        return;
    }
    for (Order& order : pending) {
        if (order.left > 0 && order.function == function && --order.left == 0) {
            begin(order);
        }
    }
}

void Failures::begin(const Order& order) {
    simulator.Notices().Once(order.function + " fails from its next call on, as --fail asks");
    plugins.Redirect(order.function, failureOf(order.function));
}

} // namespace headless
