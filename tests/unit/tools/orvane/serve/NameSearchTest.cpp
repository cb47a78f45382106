#include <gtest/gtest.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/serve/NameSearch.h"

namespace {

using namespace orvane::tool;

NameSearch search() {
    return NameSearch({{{"test/other", "int", 0, false, "", "Not the \"Beacon\""},
                        {"test/beacon_on", "int", 0, true, "boolean", "A light"},
                        {"test/Beacons", "double", 0, true, "", ""},
                        {"test/beacon_power", "float[8]", 8, false, "", ""},
                        {"test/beacon_name", "byte[40]", 40, false, "", ""}},
                       {{"test/beacon_toggle", "Toggle it"}, {"test/quit", "End"}},
                       {}});
}

TEST(NameSearchTest, FindsNamesThenDescriptionsWithTypesThatCanBeRead) {
    EXPECT_EQ(search().Matching("BEACON"),
              R"({"datarefs":[{"name":"test/beacon_on:int","text":"A light"},)"
              R"({"name":"test/Beacons:float","text":""},)"
              R"({"name":"test/beacon_power:float[8]","text":""},)"
              R"({"name":"test/other:int","text":"Not the \"Beacon\""}],)"
              R"("commands":[{"name":"test/beacon_toggle","text":"Toggle it"}]})");
    EXPECT_EQ(search().Matching("no such"), R"({"datarefs":[],"commands":[]})");
}

TEST(NameSearchTest, AnswersWithAtMostTwentyFiveOfEachKind) {
    const NameSearch many({std::vector<ListedDataref>(30, {"test/a", "int", 0, false, "", ""}),
                           std::vector<ListedCommand>(30, {"test/a", ""}),
                           {}});
    std::size_t found = 0;
    const std::string answer = many.Matching("a");
    for (std::size_t at = 0; (at = answer.find("\"name\"", at)) != std::string::npos; ++at) {
        ++found;
    }
    EXPECT_EQ(found, 50U);
}

TEST(NameSearchTest, LooksOnlyForShortPlainTexts) {
    EXPECT_TRUE(isSearchText(std::string(100, 'a')));
    EXPECT_TRUE(isSearchText("sim/Landing light"));
    for (const std::string& text :
         {std::string(), std::string(101, 'a'), std::string("a\n"), std::string(1, '\0'),
          std::string("*a"), std::string("a?"), std::string("a[0]")}) {
        EXPECT_FALSE(isSearchText(text)) << text;
        EXPECT_THROW(search().Matching(text), Failure) << text;
    }
}

} // namespace
