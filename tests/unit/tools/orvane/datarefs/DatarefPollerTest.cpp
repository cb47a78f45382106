#include <limits>

#include <gtest/gtest.h>

#include "tools/orvane/datarefs/DatarefPoller.h"

namespace {

using orvane::tool::changesBetween;
using Values = std::vector<orvane::velmar::Value>;
using Places = std::vector<std::size_t>;

TEST(DatarefPollerTest, ReportsAllAfterTheFirstReading) {
    EXPECT_EQ(changesBetween({}, Values{1, 2.5F}), (Places{0, 1}));
}

TEST(DatarefPollerTest, ReportsOnlyWhatIsDifferent) {
    const Values before{1, 2.5F, std::vector<float>{1, 2}, std::vector<std::int32_t>{3}};
    const Values after{1, 2.75F, std::vector<float>{1, 3}, std::vector<std::int32_t>{3}};
    EXPECT_EQ(changesBetween(before, after), (Places{1, 2}));
}

TEST(DatarefPollerTest, ReportsAnotherTypeAndAnotherSize) {
    const Values before{0, std::vector<float>{1, 2}};
    EXPECT_EQ(changesBetween(before, Values{0.0F, std::vector<float>{1, 2, 0}}), (Places{0, 1}));
}

TEST(DatarefPollerTest, TakesNotANumberForUnchanged) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(changesBetween(Values{nan, 1.0F}, Values{nan, nan}), (Places{1}));
}

} // namespace
