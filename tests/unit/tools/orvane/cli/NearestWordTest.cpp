#include <gtest/gtest.h>

#include "tools/orvane/cli/NearestWord.h"

using orvane::tool::nearestOption;
using orvane::tool::nearestWord;

namespace {

const std::vector<std::string> kWords{"info", "get", "set", "watch", "record", "replay", "config"};
const std::vector<std::string> kOptions{"-h",        "--help", "-T",    "--seconds",
                                        "--version", "--host", "--json"};

TEST(NearestWordTest, FindsTheWordThatWasMeant) {
    EXPECT_EQ(nearestWord("gte", kWords), "get");
    EXPECT_EQ(nearestWord("wacth", kWords), "watch");
    EXPECT_EQ(nearestWord("recrod", kWords), "record");
    EXPECT_EQ(nearestWord("confg", kWords), "config");
    EXPECT_EQ(nearestWord("infos", kWords), "info");
}

TEST(NearestWordTest, TakesABeginningForTheWord) {
    EXPECT_EQ(nearestWord("rep", kWords), "replay");
    EXPECT_EQ(nearestWord("wa", kWords), "watch");
}

TEST(NearestWordTest, FindsNoneThatIsFarAway) {
    EXPECT_EQ(nearestWord("fly", kWords), "");
    EXPECT_EQ(nearestWord("x", kWords), "");
    EXPECT_EQ(nearestWord("", kWords), "");
    EXPECT_EQ(nearestWord("get", {}), "");
}

TEST(NearestWordTest, FindsOptionsWithTheirDashes) {
    EXPECT_EQ(nearestOption("--jsn", kOptions), "--json");
    EXPECT_EQ(nearestOption("-json", kOptions), "--json");
    EXPECT_EQ(nearestOption("--second", kOptions), "--seconds");
    EXPECT_EQ(nearestOption("--frobnicate", kOptions), "");
}

TEST(NearestWordTest, TakesALetterForTheOptionThatItBegins) {
    EXPECT_EQ(nearestOption("-V", kOptions), "--version");
    EXPECT_EQ(nearestOption("-t", kOptions), "-T");
    EXPECT_EQ(nearestOption("-x", kOptions), "");
}

} // namespace
