#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "velmar/ChangeFilter.h"

namespace {

using namespace orvane::velmar;
using Names = std::vector<std::string>;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// How many of the values a filter reports as changed, starting from 10.
std::size_t changesAfterTen(double deadband, const std::vector<float>& values) {
    ChangeFilter filter(deadband);
    const Names name{"a"};
    filter.take(name, {10.0F});
    std::size_t changes = 0;
    for (const float value : values) {
        changes += filter.take(name, {value}).size();
    }
    return changes;
}

TEST(ChangeFilterTest, ReportsAllFirstAndThenWhatChanged) {
    ChangeFilter filter(0);
    const Names names{"a", "b"};
    EXPECT_EQ(filter.take(names, {1, 2.0F}), (Changes{{"a", 1}, {"b", 2.0F}}));
    EXPECT_EQ(filter.take(names, {1, 2.0F}), Changes{});
    EXPECT_EQ(filter.take(names, {1, 2.5F}), (Changes{{"b", 2.5F}}));
}

TEST(ChangeFilterTest, MeasuresFromWhatItReportedLast) {
    EXPECT_EQ(changesAfterTen(1, {10.5F, 11, 10, 9}), 0U);
    EXPECT_EQ(changesAfterTen(1, {10.5F, 11.1F, 12, 13}), 2U);
    EXPECT_EQ(changesAfterTen(1, {8.5F, 9, 10}), 2U);
}

TEST(ChangeFilterTest, LooksAtEachElement) {
    ChangeFilter filter(0.5);
    const Names name{"a"};
    filter.take(name, {std::vector<std::int32_t>{1, 2, 3}});
    EXPECT_EQ(filter.take(name, {std::vector<std::int32_t>{1, 2, 3}}), Changes{});
    EXPECT_EQ(filter.take(name, {std::vector<std::int32_t>{1, 2, 4}}),
              (Changes{{"a", std::vector<std::int32_t>{1, 2, 4}}}));
}

TEST(ChangeFilterTest, TreatsAllNotANumbersAsEqual) {
    EXPECT_EQ(changesAfterTen(1, {kNan, kNan, 10}), 2U);
    EXPECT_EQ(changesAfterTen(1, {kInfinity, kInfinity, -kInfinity}), 2U);
}

} // namespace
