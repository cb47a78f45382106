#include <elf.h>

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/host/PluginCheck.h"
#include "headless/host/PluginHost.h"
#include "support/TemporaryDirectory.h"
#include "support/Text.h"
#include "support/TextOf.h"

using headless::PluginCheck;
using headless::PluginError;
using headless::PluginFile;
using headless::PluginHost;
using headless::Simulator;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(PluginCheckTest, ListsAllThatIsMissingAndLoadsNothing) {
    const PluginCheck check((PluginFile(LACKING_PLUGIN)));
    EXPECT_THAT(check.Missing(), ElementsAre("XPLMNoSuchOne", "XPLMNoSuchTwo", "nobodyHasThis"));
    EXPECT_EQ(check.DescribeMissing(),
              "needs 3 names that neither the simulator nor the system has: XPLMNoSuchOne, "
              "XPLMNoSuchTwo, nobodyHasThis");
    Simulator sim;
    EXPECT_EQ(textOf<PluginError>([&] { PluginHost(sim, LACKING_PLUGIN); }),
              LACKING_PLUGIN ": the plugin " + check.DescribeMissing());
}

TEST(PluginCheckTest, KnowsWhatAPluginAndItsOwnLibraryUse) {
    const PluginCheck check((PluginFile(DRAWING_PLUGIN)));
    EXPECT_THAT(check.SdkFunctions(),
                ElementsAre("XPLMDebugString", "XPLMGetCycleNumber", "XPLMGetTexture"));
    EXPECT_THAT(check.NotSimulated(), ElementsAre("XPLMGetTexture"));
    EXPECT_THAT(check.Missing(), IsEmpty());
    EXPECT_EQ(check.Summary(),
              "uses 3 functions of the SDK: 2 real, 0 keep state, 1 answer 0 (XPLMGetTexture)");
}

TEST(PluginCheckTest, OpenGlAndTheSdksLibraryAreThere) {
    Simulator sim;
    PluginHost host(sim, DRAWING_PLUGIN);
    host.Start();
    EXPECT_EQ(sim.Log().Text(),
              "no-ops answer 0\n"
              "the SDK opens by name\n"
              "headless-sim: XPLMGetTexture is not simulated and answers 0: There are no "
              "textures.\n");
}

TEST(PluginCheckTest, AStrictHostRefusesWhatOnlyAnswersZero) {
    Simulator sim;
    EXPECT_EQ(textOf<PluginError>([&] { PluginHost(sim, DRAWING_PLUGIN, true); }), DRAWING_PLUGIN
              ": the plugin uses 1 function that the simulator does not have and "
              "answers with 0: XPLMGetTexture");
    EXPECT_EQ(textOf<PluginError>([&] { PluginHost(sim, FAKE_PLUGIN, true); }), "");
}

TEST(PluginCheckTest, AFileForAnotherComputerIsOneLine) {
    const TemporaryDirectory folder;
    std::string plugin = contentOf(FAKE_PLUGIN);
    plugin[offsetof(Elf64_Ehdr, e_machine)] = EM_PPC64;
    plugin[offsetof(Elf64_Ehdr, e_machine) + 1] = 0;
    const std::string path = folder.Write("other.xpl", plugin);
    EXPECT_THAT(textOf<PluginError>([&] { PluginFile{path}; }),
                HasSubstr(path + ": the plugin is built for another kind of computer (64 bits, "
                                 "machine 21)"));
    plugin[EI_CLASS] = ELFCLASS32;
    EXPECT_THAT(textOf<PluginError>([&] { PluginFile{folder.Write("other.xpl", plugin)}; }),
                HasSubstr("(32 bits, machine 21)"));
}

TEST(PluginCheckTest, ATornFileDoesNoHarm) {
    const TemporaryDirectory folder;
    const std::string plugin = contentOf(FAKE_PLUGIN);
    for (std::size_t size = 0; size < plugin.size(); size += 97) {
        const std::string path = folder.Write("torn.xpl", plugin.substr(0, size));
        textOf<PluginError>([&] { PluginCheck{PluginFile(path)}; });
    }
    EXPECT_THAT(textOf<PluginError>([&] { PluginFile{folder.Write("text.xpl", "hello")}; }),
                HasSubstr("not a plugin for Linux"));
    EXPECT_THAT(textOf<PluginError>([&] { PluginFile{folder.Path("none.xpl")}; }),
                HasSubstr("cannot be read"));
    EXPECT_THAT(textOf<PluginError>([&] { PluginFile{folder.Path("")}; }),
                HasSubstr("cannot be read"));
}

// The copy needs a library of its own name from its folder, which it names in another way each
// time.
TEST(PluginCheckTest, LibrariesMayNeedEachOther) {
    const TemporaryDirectory folder;
    std::string library = contentOf(DRAWING_PLUGIN);
    const std::string former = PluginFile(DRAWING_PLUGIN).RunPath().front();
    std::string runPath = "$ORIGIN/../own";
    ASSERT_GE(former.size(), runPath.size());
    runPath.resize(former.size(), '\0');
    library.replace(library.find(former), former.size(), runPath);
    std::filesystem::create_directory(folder.Path("own"));
    const PluginFile plugin(folder.Write("own/libdrawing_companion.so", library));
    EXPECT_EQ(withOwnLibraries(plugin).size(), 2U);
}
