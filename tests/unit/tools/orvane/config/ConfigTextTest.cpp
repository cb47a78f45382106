#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/config/ConfigReader.h"
#include "tools/orvane/config/ConfigText.h"

using orvane::tool::config::configAsLines;
using orvane::tool::config::configAsRecords;
using orvane::tool::config::configColumns;
using orvane::tool::config::readConfig;
using testing::Contains;
using testing::ElementsAre;

namespace {

// One of each: registered, registered with a note, ignored; one of the plugin's own is there.
constexpr const char* kFile =
    "kyr/light float\n"
    "kyr/\"lamps\" int_array 8x\n"
    "kyr/broken Float\n"
    "kyr/autopilot_external_control int\n"
    "kyr/autopilot_trigger_disable int\n"
    "kyr/external_forcescalefactor_active int_array 4\n";

} // namespace

TEST(ConfigTextTest, WritesALinePerLineAndASummary) {
    EXPECT_THAT(configAsLines(readConfig(kFile), "a.cfg"),
                ElementsAre("a.cfg:1: registers float kyr/light",
                            "a.cfg:2: registers int_array[8] kyr/\"lamps\" (the number of elements "
                            "\"8x\" reads as 8)",
                            "a.cfg:3: ignored: unknown type \"Float\"",
                            "a.cfg:4: registers int kyr/autopilot_external_control",
                            "a.cfg:5: registers int kyr/autopilot_trigger_disable",
                            "a.cfg:6: registers int_array[4] kyr/external_forcescalefactor_active",
                            "a.cfg: appended by the plugin: int_array[4] "
                            "kyr/external_forcescalefactor_value",
                            "a.cfg: 5 registered, 1 ignored, 1 appended"));
}

TEST(ConfigTextTest, MakesARecordPerLine) {
    const auto records = configAsRecords(readConfig(kFile), "a.cfg");
    ASSERT_EQ(records.size(), 7U);
    EXPECT_EQ(records[0].dump(), R"({"file":"a.cfg","line":1,"verdict":"registers","type":"float",)"
                                 R"("name":"kyr/light"})");
    EXPECT_EQ(records[1].dump(),
              R"({"file":"a.cfg","line":2,"verdict":"registers","type":"int_array",)"
              R"("name":"kyr/\"lamps\"","elements":8,)"
              R"("text":"the number of elements \"8x\" reads as 8"})");
    EXPECT_EQ(records[2].dump(),
              R"({"file":"a.cfg","line":3,"verdict":"ignored","reason":"unknown-type",)"
              R"("text":"unknown type \"Float\""})");
    EXPECT_EQ(records[6].dump(), R"({"file":"a.cfg","verdict":"appended","type":"int_array",)"
                                 R"("name":"kyr/external_forcescalefactor_value","elements":4})");
}

TEST(ConfigTextTest, NamesTheFieldsOfItsRecords) {
    const std::vector<std::string> columns = configColumns();
    for (const auto& record : configAsRecords(readConfig(kFile), "a.cfg")) {
        for (const auto& [field, value] : record.items()) {
            EXPECT_THAT(columns, Contains(field));
        }
    }
}
