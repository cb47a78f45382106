#include <string>

#include <gtest/gtest.h>

#include "headless/metering/CallCounts.h"
#include "headless/xplm/FunctionTable.h"

using headless::CallCounts;

TEST(CallCountsTest, CountsByName) {
    const std::string same = "XPLMGetDataf";
    CallCounts counts;
    counts.Add("XPLMGetDataf");
    counts.Add("XPLMGetDatai", 3);
    counts.Add(same.c_str());
    EXPECT_EQ(counts.Of("XPLMGetDataf"), 2U) << "at whatever address";
    EXPECT_EQ(counts.Of("XPLMGetDatad"), 0U);
    EXPECT_EQ(counts.Total(), 5U);
}

TEST(CallCountsTest, ListsTheMostFrequentFirst) {
    CallCounts counts;
    counts.Add("b");
    counts.Add("a");
    counts.Add("c", 2);
    const auto entries = counts.Entries();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].function, "c");
    EXPECT_EQ(entries[1].function, "a");
    EXPECT_EQ(entries[2].function, "b");
    counts.Clear();
    EXPECT_TRUE(counts.Entries().empty());
}

TEST(CallCountsTest, HasRoomForAllFunctions) {
    CallCounts counts;
    CallCounts sum;
    for (const auto& function : headless::sdkFunctions()) {
        counts.Add(function.name.data());
    }
    sum.Add(counts);
    sum.Add(counts);
    EXPECT_EQ(sum.Entries().size(), headless::sdkFunctions().size());
    EXPECT_EQ(sum.Of("XPLMGetDataf"), 2U);
}
