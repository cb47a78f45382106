#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/host/PluginError.h"
#include "headless/host/PluginFinder.h"
#include "support/TemporaryDirectory.h"
#include "support/TextOf.h"

using headless::findPlugin;
using headless::findPluginsOfSystem;
using headless::PluginError;
using headless::PluginPlace;

class PluginFinderTest : public ::testing::Test {
protected:
    // An empty file, with the folders that it needs.
    std::string make(const std::string& file) {
        std::filesystem::create_directories(std::filesystem::path(folder.Path(file)).parent_path());
        return folder.Write(file, "");
    }

    static std::string errorOf(const std::string& path) {
        return textOf<PluginError>([&] { findPlugin(path); });
    }

    TemporaryDirectory folder;
};

TEST_F(PluginFinderTest, ALibraryIsCalledAfterItsPluginsFolderOrItself) {
    for (const char* file :
         {"My/64/lin.xpl", "My/lin_x64/My.xpl", "My/lin.xpl", "build/My.xpl", "My.xpl"}) {
        const PluginPlace place = findPlugin(make(file));
        EXPECT_EQ(place.name, "My") << file;
        EXPECT_EQ(place.file, folder.Path(file));
    }
}

TEST_F(PluginFinderTest, FindsTheLibraryInEachOfTheSimulatorsLayoutsAndPrefersTheNewest) {
    for (const char* file : {"My.xpl", "lin.xpl", "64/lin.xpl", "lin_x64/My.xpl"}) {
        make(std::string("My/") + file);
        const PluginPlace place = findPlugin(folder.Path("My"));
        EXPECT_EQ(place.name, "My");
        EXPECT_EQ(place.file, folder.Path("My/") + file);
    }
    EXPECT_EQ(findPlugin(folder.Path("My/")).name, "My");
}

TEST_F(PluginFinderTest, AFolderWithoutAPluginIsNamedWithWhatWasLookedFor) {
    make("My/64/win.xpl");
    make("My/lin_x64/Other.xpl");
    EXPECT_EQ(errorOf(folder.Path("My")), folder.Path("My") +
                                              ": the folder has no plugin: 64/lin.xpl, "
                                              "lin_x64/My.xpl, lin.xpl or My.xpl");
    EXPECT_EQ(errorOf(folder.Path("none")), folder.Path("none") + ": there is no such plugin");
}

TEST_F(PluginFinderTest, ASystemsPluginsComeInAlphabeticalOrder) {
    make("Resources/plugins/b/64/lin.xpl");
    make("Resources/plugins/a/lin_x64/a.xpl");
    make("Resources/plugins/c.xpl");
    make("Resources/plugins/for_windows/64/win.xpl");
    make("Resources/plugins/settings.txt");
    std::vector<std::string> names;
    for (const PluginPlace& place : findPluginsOfSystem(folder.Path(""))) {
        names.push_back(place.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c"}));
}

TEST_F(PluginFinderTest, AFolderThatIsNotASystemOrHasNoPluginsIsRefused) {
    EXPECT_THROW(findPluginsOfSystem(folder.Path("")), PluginError);
    make("Resources/plugins/settings.txt");
    EXPECT_THROW(findPluginsOfSystem(folder.Path("")), PluginError);
}
