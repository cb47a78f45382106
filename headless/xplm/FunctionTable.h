#pragma once

#include <span>
#include <string>
#include <string_view>

namespace headless {

// How much of a function of the SDK is here.
enum class FunctionKind {
    // Does what the SDK documents.
    Real,
    // Nothing is drawn or heard, but what it is told it keeps and gives back.
    KeepsState,
    // Does nothing and answers 0; its outputs are filled.
    AnswersZero
};

struct SdkFunction {
    std::string_view name;
    // The SDK's header that declares it.
    std::string_view header;
    FunctionKind kind;
    // What differs from the simulator; empty when nothing does.
    std::string_view difference;
};

// All functions of the SDK, in the order of their headers and names: the one list of what is here.
std::span<const SdkFunction> sdkFunctions();
// Null when the SDK has no such function.
const SdkFunction* findSdkFunction(std::string_view name);
// "real", "keeps state" or "answers 0".
std::string_view describe(FunctionKind kind);

} // namespace headless
