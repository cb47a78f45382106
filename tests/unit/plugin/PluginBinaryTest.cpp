// The built plugin as the simulator's dynamic linker sees it.

#include <dlfcn.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/xplm/Simulator.h"
#include "orvane/headless/Simulator.h"
#include "support/TemporaryDirectory.h"
#include "support/Text.h"

namespace {

using testing::ElementsAre;

const std::string kPlugin = ORVANE_PLUGIN_PATH;

// The output of a program, run with the plugin as its argument.
std::vector<std::string> linesAbout(const std::string& program) {
    return linesOf(outputOf(program + " '" + kPlugin + "'"));
}

// One line of nm: a kind such as "U" or "T", and a name such as "recv@GLIBC_2.2.5".
struct Symbol {
    char kind;
    std::string name;
    std::string version;
};

std::vector<Symbol> dynamicSymbols(const std::string& selection) {
    std::vector<Symbol> symbols;
    for (const std::string& line : linesAbout("nm -D " + selection)) {
        // An undefined symbol has blanks for an address.
        std::istringstream fields(line.substr(line.find_first_not_of("0123456789abcdef ")));
        Symbol symbol{};
        std::string name;
        fields >> symbol.kind >> name;
        const auto at = name.find('@');
        symbol.name = name.substr(0, at);
        if (at != std::string::npos) {
            symbol.version = name.substr(name.find_last_of('@') + 1);
        }
        symbols.push_back(symbol);
    }
    return symbols;
}

// "GLIBCXX_3.4.28" is the family "GLIBCXX" and the numbers 3, 4, 28.
std::string familyOf(const std::string& version) {
    return version.substr(0, version.find_last_of('_'));
}

std::vector<int> numbersOf(const std::string& version) {
    std::vector<int> numbers;
    std::istringstream fields(version.substr(version.find_last_of('_') + 1));
    for (std::string number; std::getline(fields, number, '.');) {
        numbers.push_back(std::stoi(number));
    }
    return numbers;
}

bool isMapped() {
    const std::string fileName = kPlugin.substr(kPlugin.find_last_of('/'));
    const std::vector<std::string> mappings = linesOf(contentOf("/proc/self/maps"));
    return std::any_of(mappings.begin(), mappings.end(),
                       [&](const std::string& line) { return line.ends_with(fileName); });
}

TEST(PluginBinaryTest, ExportsTheFiveEntryPointsAndNothingElse) {
    std::vector<std::string> exported;
    for (const Symbol& symbol : dynamicSymbols("--defined-only")) {
        EXPECT_EQ(symbol.kind, 'T') << symbol.name;
        exported.push_back(symbol.name);
    }
    std::sort(exported.begin(), exported.end());
    EXPECT_THAT(exported, ElementsAre("XPluginDisable", "XPluginEnable", "XPluginReceiveMessage",
                                      "XPluginStart", "XPluginStop"));
}

// Such a symbol keeps the module in the process.
TEST(PluginBinaryTest, HasNoUniqueSymbols) {
    for (const Symbol& symbol : dynamicSymbols("")) {
        EXPECT_NE(symbol.kind, 'u') << symbol.name;
    }
}

TEST(PluginBinaryTest, LeavesUndefinedOnlyWhatTheSimulatorAndTheSystemProvide) {
    const std::set<std::string> systemFamilies{"GLIBC", "GLIBCXX", "CXXABI", "GCC"};
    const std::set<std::string> usualWeak{"_ITM_deregisterTMCloneTable",
                                          "_ITM_registerTMCloneTable", "__gmon_start__"};
    std::size_t simulatorFunctions = 0;
    for (const Symbol& symbol : dynamicSymbols("--undefined-only")) {
        if (symbol.version.empty()) {
            const bool isSimulators = symbol.kind == 'U' && symbol.name.starts_with("XPLM");
            simulatorFunctions += isSimulators ? 1 : 0;
            EXPECT_TRUE(isSimulators || usualWeak.contains(symbol.name)) << symbol.name;
        } else {
            EXPECT_TRUE(systemFamilies.contains(familyOf(symbol.version)))
                << symbol.name << "@" << symbol.version;
        }
    }
    EXPECT_GE(simulatorFunctions, 20U) << "the XPLM functions must not be linked in";
}

TEST(PluginBinaryTest, NeedsNoNewerSystemThanTheSimulatorDoes) {
    std::size_t versioned = 0;
    for (const Symbol& symbol : dynamicSymbols("--undefined-only")) {
        const std::string family = familyOf(symbol.version);
        const std::string shown = symbol.name + "@" + symbol.version;
        if (family == "GLIBC") {
            ++versioned;
            EXPECT_LE(numbersOf(symbol.version), (std::vector{2, 14})) << shown;
        } else if (family == "GLIBCXX") {
            ++versioned;
            EXPECT_LE(numbersOf(symbol.version), (std::vector{3, 4, 28})) << shown;
        } else if (family == "CXXABI") {
            // The one that came with GLIBCXX_3.4.28.
            EXPECT_LE(numbersOf(symbol.version), (std::vector{1, 3, 12})) << shown;
        }
    }
    EXPECT_GT(versioned, 0U);
}

TEST(PluginBinaryTest, NeedsOnlyTheLibrariesOfTheSystem) {
    const std::set<std::string> allowed{"libc.so.6", "libm.so.6", "libstdc++.so.6", "libgcc_s.so.1",
                                        "ld-linux-x86-64.so.2"};
    std::set<std::string> needed;
    for (const std::string& line : linesAbout("readelf --dynamic --wide")) {
        if (line.find("(NEEDED)") != std::string::npos) {
            const auto open = line.find('[');
            needed.insert(line.substr(open + 1, line.find(']') - open - 1));
        }
    }
    EXPECT_TRUE(needed.contains("libc.so.6"));
    for (const std::string& library : needed) {
        EXPECT_TRUE(allowed.contains(library)) << library;
    }
}

TEST(PluginBinaryTest, LeavesTheProcessAHundredTimes) {
    // The simulator's functions come from the program's own libraries.
    const headless::Simulator simulator;
    ASSERT_FALSE(isMapped());
    for (int i = 0; i < 100; ++i) {
        void* const plugin = dlopen(kPlugin.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(plugin, nullptr) << dlerror();
        ASSERT_TRUE(isMapped());
        ASSERT_EQ(dlclose(plugin), 0);
        ASSERT_FALSE(isMapped()) << "after loading it " << i + 1 << " times";
    }
}

TEST(PluginBinaryTest, LeavesTheProcessAfterItHasRun) {
    const TemporaryDirectory directory;
    directory.MakePluginsFolder();
    directory.Write("XPLANEORVANE_VERBOSE", "");
    orvane::headless::Simulator simulator;
    for (int i = 0; i < 10; ++i) {
        orvane::headless::Plugin& plugin = simulator.load(kPlugin);
        ASSERT_TRUE(isMapped());
        EXPECT_EQ(plugin.name(), "XPlaneTCPOrvaneLin v7.0.1");
        simulator.runFrames(2);
        ASSERT_TRUE(simulator.unload(plugin));
        ASSERT_FALSE(isMapped()) << "after running it " << i + 1 << " times";
    }
}

} // namespace
