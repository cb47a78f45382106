#pragma once

#include <span>
#include <string>
#include <string_view>

namespace headless {

// How much of an SDK function is simulated.
enum class FunctionKind {
    // Does what the SDK documents.
    Real,
    // Draws and plays nothing, but keeps what it is given and returns it.
    KeepsState,
    // Does nothing and returns 0; its outputs are filled.
    AnswersZero
};

struct SdkFunction {
    std::string_view name;
    // The SDK's header that declares it.
    std::string_view header;
    FunctionKind kind;
    // How it differs from the simulator; empty if it does not.
    std::string_view difference;
};

// All functions of the SDK, in the order of their headers and names: the only list of them.
std::span<const SdkFunction> sdkFunctions();
// Null if the SDK has no such function.
const SdkFunction* findSdkFunction(std::string_view name);
// "real", "keeps state" or "answers 0".
std::string_view describe(FunctionKind kind);

} // namespace headless
