#include <dlfcn.h>

#include <cstdio>
#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "XPLMUtilities.h"
#include "headless/xplm/FunctionTable.h"
#include "headless/xplm/Simulator.h"

using headless::findSdkFunction;
using headless::FunctionKind;
using headless::SdkFunction;
using headless::sdkFunctions;
using headless::Simulator;

namespace {

// The names that the library gives to plugins.
std::set<std::string> exportedNames() {
    std::set<std::string> names;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(
        ::popen("nm -D --defined-only " XPLM_LIBRARY, "r"), &::pclose);
    char name[512];
    while (std::fscanf(output.get(), "%*s %*s %511s", name) == 1) {
        const std::string text = name;
        if (text.rfind("XP", 0) == 0) {
            names.insert(text);
        }
    }
    return names;
}

} // namespace

TEST(FunctionTableTest, HasEveryFunctionOfTheSdkOnce) {
    std::set<std::string> names;
    for (const SdkFunction& function : sdkFunctions()) {
        EXPECT_TRUE(names.insert(std::string(function.name)).second) << function.name;
    }
    EXPECT_EQ(names.size(), 289U);
}

TEST(FunctionTableTest, IsWhatTheLibraryExports) {
    std::set<std::string> names;
    for (const SdkFunction& function : sdkFunctions()) {
        names.insert(std::string(function.name));
    }
    EXPECT_EQ(exportedNames(), names);
}

TEST(FunctionTableTest, FindsAFunctionByName) {
    const SdkFunction* const found = findSdkFunction("XPLMGetTexture");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->header, "XPLMGraphics");
    EXPECT_EQ(found->kind, FunctionKind::AnswersZero);
    EXPECT_EQ(findSdkFunction("XPLMNone"), nullptr);
}

TEST(FunctionTableTest, APluginFindsTheSdksFunctionsAndNoOthers) {
    const Simulator sim;
    EXPECT_EQ(XPLMFindSymbol("XPLMDebugString"), ::dlsym(RTLD_DEFAULT, "XPLMDebugString"));
    EXPECT_NE(XPLMFindSymbol("XPCreateWidget"), nullptr);
    EXPECT_EQ(XPLMFindSymbol("malloc"), nullptr);
    EXPECT_EQ(XPLMFindSymbol(nullptr), nullptr);
}
