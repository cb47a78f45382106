#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

#include "tools/orvane/latency/RoundTrips.h"

using orvane::tool::Bucket;
using orvane::tool::framesPerSecond;
using orvane::tool::histogram;
using orvane::tool::histogramLines;
using orvane::tool::Milliseconds;
using orvane::tool::percentile;

namespace {

using Numbers = std::vector<double>;

Numbers oneTo(std::size_t count) {
    Numbers numbers(count);
    std::iota(numbers.begin(), numbers.end(), 1.0);
    return numbers;
}

TEST(RoundTripsTest, TakesPercentilesFromTheValuesThemselves) {
    EXPECT_EQ(percentile(oneTo(100), 50), 50.0);
    EXPECT_EQ(percentile(oneTo(100), 99), 99.0);
    EXPECT_EQ(percentile(oneTo(10), 99), 10.0);
    EXPECT_EQ(percentile(Numbers{3, 1, 2}, 50), 2.0);
    EXPECT_EQ(percentile(Numbers{3, 1, 2}, 0), 1.0);
    EXPECT_EQ(percentile(Numbers{3, 1, 2}, 100), 3.0);
    EXPECT_EQ(percentile(Numbers{7}, 90), 7.0);
}

TEST(RoundTripsTest, CountsEachValueInOneBucketOfARoundWidth) {
    const std::vector<Bucket> buckets = histogram(oneTo(100));
    ASSERT_EQ(buckets.size(), 11U);
    EXPECT_EQ(buckets[0].from, 0.0);
    EXPECT_EQ(buckets[0].to, 10.0);
    EXPECT_EQ(buckets[0].count, 9U);
    EXPECT_EQ(buckets[1].count, 10U);
    EXPECT_EQ(buckets[9].count, 10U);
    // The hundredth lies beyond the 99th percentile's bucket.
    EXPECT_EQ(buckets[10].from, 100.0);
    EXPECT_TRUE(std::isinf(buckets[10].to));
    EXPECT_EQ(buckets[10].count, 1U);
}

TEST(RoundTripsTest, MakesOneBucketOfValuesThatAreTheSame) {
    const std::vector<Bucket> buckets = histogram(Numbers{20.0, 20.0});
    ASSERT_EQ(buckets.size(), 1U);
    EXPECT_EQ(buckets[0].count, 2U);
    EXPECT_NEAR(buckets[0].to - buckets[0].from, 0.001, 1e-9);
}

TEST(RoundTripsTest, DrawsBarsInProportion) {
    const std::vector<Bucket> buckets{
        {33.0, 33.2, 4}, {33.2, 33.4, 0}, {33.4, 33.6, 1}, {33.6, INFINITY, 1}};
    EXPECT_EQ(histogramLines(buckets, 8, false), (std::vector<std::string>{
                                                     "     33.0 - 33.2 ms            4  ########",
                                                     "     33.2 - 33.4 ms            0  ",
                                                     "     33.4 - 33.6 ms            1  ##",
                                                     "     33.6 - beyond             1  ##",
                                                 }));
}

TEST(RoundTripsTest, ShowsABarForASingleValueAmongMany) {
    const std::vector<Bucket> buckets{{1, 2, 1000}, {2, 3, 1}};
    EXPECT_EQ(histogramLines(buckets, 4, true), (std::vector<std::string>{
                                                    "        1 - 2 ms            1000  ████",
                                                    "        2 - 3 ms               1  █",
                                                }));
}

TEST(RoundTripsTest, ComputesTheFrameRateFromTwoFramesPerExchange) {
    EXPECT_DOUBLE_EQ(framesPerSecond(Milliseconds(40), Milliseconds(0.1)), 50.0);
    EXPECT_DOUBLE_EQ(framesPerSecond(Milliseconds(20), Milliseconds(9.9)), 100.0);
}

TEST(RoundTripsTest, GivesNoFrameRateThroughASlowNetwork) {
    EXPECT_EQ(framesPerSecond(Milliseconds(40), Milliseconds(20)), 0.0);
    EXPECT_EQ(framesPerSecond(Milliseconds(40), Milliseconds(35)), 0.0);
}

} // namespace
