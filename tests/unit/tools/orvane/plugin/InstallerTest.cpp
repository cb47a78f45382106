#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/plugin/Installer.h"
#include "tools/orvane/plugin/PluginFiles.h"
#include "tools/orvane/simulators/Simulators.h"

using orvane::tool::Failure;
using orvane::tool::ListedSimulators;
using orvane::tool::listedSimulators;
using orvane::tool::SimulatorKind;
using orvane::tool::whyNotSimulator;
using orvane::tool::plugin::FileSteps;
using orvane::tool::plugin::findPluginToCopy;
using orvane::tool::plugin::Installer;
using orvane::tool::plugin::pluginVersionOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

constexpr const char* kNew =
    "\x7F"
    "ELF XPlane10Orvane v7.0.1\nmore";
constexpr const char* kOld =
    "\x7F"
    "ELF XPlane10Orvane v6.9.10";
constexpr const char* kPlugin = "sim/Resources/plugins/XPlaneOrvane";
constexpr const char* kLibrary = "sim/Resources/plugins/XPlaneOrvane/64/lin.xpl";
constexpr const char* kSettings = "sim/Resources/plugins/xplaneorvane_datarefs.cfg";

std::vector<std::string> linesOf(const FileSteps& steps) {
    std::vector<std::string> lines;
    for (const auto& step : steps) {
        lines.push_back(step.action + " " + step.file.string());
    }
    return lines;
}

std::string refusal(const std::function<void()>& work) {
    try {
        work();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "nothing was refused";
}

class InstallerTest : public testing::Test {
protected:
    InstallerTest() {
        fs::create_directories("sim/Resources/plugins");
        fs::create_directories("XPlaneOrvane/64");
        directory.Write("XPlaneOrvane/64/lin.xpl", kNew);
        directory.Write("XPlaneOrvane/LICENSE.txt", "licence");
        directory.Write("XPlaneOrvane/somebody.txt", "not the plugin's");
    }

    void writeOld() const {
        fs::create_directories("sim/Resources/plugins/XPlaneOrvane/64");
        directory.Write(kLibrary, kOld);
    }

    const TemporaryDirectory directory;
    const Installer installer{"sim", Installer::Mode::Real};
    const Installer dry{"sim", Installer::Mode::DryRun};
};

TEST_F(InstallerTest, CopiesThePluginsFilesAndKeepsTheConfiguration) {
    directory.Write(kSettings, "kyr/light float\n");
    const auto expected = ElementsAre("copied sim/Resources/plugins/XPlaneOrvane/64/lin.xpl",
                                      "copied sim/Resources/plugins/XPlaneOrvane/LICENSE.txt",
                                      "kept sim/Resources/plugins/xplaneorvane_datarefs.cfg");
    EXPECT_THAT(linesOf(dry.Install("XPlaneOrvane")), expected);
    EXPECT_FALSE(directory.Has(kPlugin));
    EXPECT_THAT(linesOf(installer.Install("XPlaneOrvane")), expected);
    EXPECT_EQ(directory.Read(kLibrary), kNew);
    EXPECT_EQ(directory.Read(kSettings), "kyr/light float\n");
    EXPECT_FALSE(directory.Has("sim/Resources/plugins/XPlaneOrvane/somebody.txt"));
}

// A simulator that runs has the old file mapped.
TEST_F(InstallerTest, PutsANewFileInPlaceOfTheOldOneWithoutWritingIntoIt) {
    writeOld();
    fs::create_hard_link(kLibrary, "mapped");
    EXPECT_EQ(installer.InstalledVersion(), "6.9.10");
    installer.Install("XPlaneOrvane");
    EXPECT_EQ(directory.Read("mapped"), kOld);
    EXPECT_EQ(installer.InstalledVersion(), "7.0.1");
    EXPECT_FALSE(directory.Has(std::string(kLibrary) + ".orvane-new"));
}

TEST_F(InstallerTest, LeavesTheOldFileIfTheNewOneCannotBeWritten) {
    writeOld();
    // Something that cannot be removed is where the new file is written.
    fs::create_directories(std::string(kLibrary) + ".orvane-new/full");
    EXPECT_NE(refusal([&] { installer.Install("XPlaneOrvane"); }), "nothing was refused");
    EXPECT_EQ(directory.Read(kLibrary), kOld);
}

TEST_F(InstallerTest, RemovesItsOwnFilesAndLeavesTheRest) {
    installer.Install("XPlaneOrvane");
    directory.Write(kSettings, "");
    directory.Write("sim/Resources/plugins/XPlaneOrvane/64/notes.txt", "mine");
    directory.Write(std::string(kLibrary) + ".orvane-new", "cut off");
    fs::create_directories("elsewhere");
    directory.Write("elsewhere/precious.txt", "");
    fs::create_directory_symlink(directory.Path() / "elsewhere", std::string(kPlugin) + "/linked");
    const auto expected =
        ElementsAre("removed sim/Resources/plugins/XPlaneOrvane/64/lin.xpl",
                    "removed sim/Resources/plugins/XPlaneOrvane/64/lin.xpl.orvane-new",
                    "removed sim/Resources/plugins/XPlaneOrvane/LICENSE.txt",
                    "left sim/Resources/plugins/XPlaneOrvane/64/notes.txt",
                    "left sim/Resources/plugins/XPlaneOrvane/linked",
                    "kept sim/Resources/plugins/xplaneorvane_datarefs.cfg");
    EXPECT_THAT(linesOf(dry.Remove(Installer::Configuration::Keep)), expected);
    EXPECT_TRUE(installer.IsInstalled());
    EXPECT_THAT(linesOf(installer.Remove(Installer::Configuration::Keep)), expected);
    EXPECT_FALSE(installer.IsInstalled());
    EXPECT_TRUE(directory.Has("elsewhere/precious.txt"));
    EXPECT_TRUE(directory.Has("sim/Resources/plugins/XPlaneOrvane/64/notes.txt"));
}

TEST_F(InstallerTest, RemovesEmptyFoldersAndWhatItIsToldToPurge) {
    installer.Install("XPlaneOrvane");
    directory.Write(kSettings, "");
    directory.Write("sim/Resources/plugins/other.xpl", "");
    installer.Remove(Installer::Configuration::Remove);
    EXPECT_FALSE(directory.Has(kPlugin));
    EXPECT_FALSE(directory.Has(kSettings));
    EXPECT_TRUE(directory.Has("sim/Resources/plugins/other.xpl"));
    EXPECT_THAT(linesOf(installer.Remove(Installer::Configuration::Remove)), IsEmpty());
}

TEST_F(InstallerTest, DoesNotFollowALinkInThePluginsPlace) {
    fs::create_directory_symlink(directory.Path() / "XPlaneOrvane", kPlugin);
    EXPECT_EQ(refusal([&] { installer.RequireOwnFolder(); }),
              "sim/Resources/plugins/XPlaneOrvane is a symbolic link, which this command does not "
              "follow; remove the link first");
    fs::remove(kPlugin);
    fs::create_directories(kPlugin);
    fs::create_directory_symlink(directory.Path() / "XPlaneOrvane/64",
                                 std::string(kPlugin) + "/64");
    EXPECT_NE(refusal([&] { installer.RequireOwnFolder(); }), "nothing was refused");
    // A link in a file's place goes, and what it leads to stays.
    fs::remove(std::string(kPlugin) + "/64");
    fs::create_directories(std::string(kPlugin) + "/64");
    fs::create_symlink(directory.Path() / "XPlaneOrvane/64/lin.xpl", kLibrary);
    installer.Remove(Installer::Configuration::Keep);
    EXPECT_EQ(directory.Read("XPlaneOrvane/64/lin.xpl"), kNew);
}

TEST_F(InstallerTest, FindsThePluginInTheFolderGivenOrInItsXPlaneOrvane) {
    EXPECT_EQ(findPluginToCopy("XPlaneOrvane"), "XPlaneOrvane");
    EXPECT_EQ(findPluginToCopy("."), "./XPlaneOrvane");
    EXPECT_EQ(refusal([] { findPluginToCopy("sim"); }),
              "sim: neither it nor its folder XPlaneOrvane has the plugin, 64/lin.xpl");
    EXPECT_EQ(pluginVersionOf("XPlaneOrvane/LICENSE.txt"), std::nullopt);
    EXPECT_EQ(pluginVersionOf("nothing"), std::nullopt);
}

TEST_F(InstallerTest, TakesAFolderWithPluginsAndProgramForASimulator) {
    EXPECT_EQ(whyNotSimulator("none", SimulatorKind::XPlane), "none: there is no such folder");
    EXPECT_EQ(whyNotSimulator("XPlaneOrvane", SimulatorKind::Headless),
              "XPlaneOrvane is not a simulator: it has no folder Resources/plugins");
    EXPECT_EQ(
        whyNotSimulator("sim", SimulatorKind::XPlane),
        "sim is not a simulator: it has neither X-Plane-x86_64 nor X-Plane (--headless takes a "
        "folder of headless-sim)");
    EXPECT_EQ(whyNotSimulator("sim", SimulatorKind::Headless), "");
    directory.Write("sim/X-Plane", "");
    EXPECT_EQ(whyNotSimulator("sim", SimulatorKind::XPlane), "");
}

TEST_F(InstallerTest, ReadsTheListsOfTheSimulatorsInstaller) {
    directory.Write("sim/X-Plane-x86_64", "");
    fs::create_directories("X-Plane 11/Resources/plugins");
    directory.Write("X-Plane 11/X-Plane-x86_64", "");
    fs::create_directories(".x-plane");
    const std::string here = directory.Path().string();
    directory.Write(".x-plane/x-plane_install_10.txt", here + "/sim");
    directory.Write(".x-plane/x-plane_install_11.txt",
                    here + "/X-Plane 11/\r\n\n  \n" + here + "/gone\n");
    directory.Write(".x-plane/x-plane_install_12.txt", here + "/./sim/\n" + here + "/sim\n");
    const ListedSimulators listed = listedSimulators(here);
    EXPECT_THAT(listed.folders, ElementsAre(fs::canonical("sim"), fs::canonical("X-Plane 11")));
    EXPECT_THAT(listed.notes, ElementsAre(here + "/.x-plane/x-plane_install_11.txt: " + here +
                                          "/gone: there is no such folder; skipped"));
    EXPECT_THAT(listedSimulators(here + "/nobody").folders, IsEmpty());
    EXPECT_THAT(listedSimulators("").folders, IsEmpty()) << "the lists are in the working folder";
}

} // namespace
