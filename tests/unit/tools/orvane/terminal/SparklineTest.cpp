#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tools/orvane/terminal/Sparkline.h"

using orvane::tool::sparkline;

namespace {

using Numbers = std::vector<double>;

TEST(SparklineTest, DrawsEightHeightsBetweenTheLeastAndTheGreatest) {
    EXPECT_EQ(sparkline(Numbers{0, 1, 2, 3, 4, 5, 6, 7}, true), "▁▂▃▄▅▆▇█");
    EXPECT_EQ(sparkline(Numbers{-10, 10}, true), "▁█");
}

TEST(SparklineTest, DrawsNumbersTooCloseToTellApartAsEqual) {
    EXPECT_EQ(sparkline(Numbers{0, std::numeric_limits<double>::denorm_min()}, true),
              sparkline(Numbers{0, 0}, true));
}

TEST(SparklineTest, DrawsThreeHeightsWithoutUnicode) {
    EXPECT_EQ(sparkline(Numbers{2, 1, 0, 1, 2}, false), "^-_-^");
}

TEST(SparklineTest, DrawsWhatDoesNotMoveInTheMiddle) {
    EXPECT_EQ(sparkline(Numbers{5, 5, 5}, true), "▅▅▅");
    EXPECT_EQ(sparkline(Numbers{0}, false), "-");
    EXPECT_EQ(sparkline(Numbers{}, true), "");
}

TEST(SparklineTest, LeavesABlankForANotANumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(sparkline(Numbers{0, nan, 1, infinity}, false), "_ ^ ");
    EXPECT_EQ(sparkline(Numbers{nan}, true), " ");
}

TEST(SparklineTest, DrawsRangesThatAreLargerThanADouble) {
    const double most = std::numeric_limits<double>::max();
    EXPECT_EQ(sparkline(Numbers{-most, 0, most}, false), "_-^");
}

} // namespace
