#include <string>

#include <gtest/gtest.h>

#include "velmar/Batches.h"

namespace {

using orvane::velmar::Batch;
using orvane::velmar::Cost;
using orvane::velmar::cutIntoRequests;

std::string cut(const std::vector<Cost>& packets, Cost base = {4, 4}) {
    std::string text;
    for (const Batch& batch : cutIntoRequests(packets, base)) {
        text += std::to_string(batch.begin) + "-" + std::to_string(batch.end) + " ";
    }
    return text;
}

TEST(BatchesTest, KeepARequestWithinAPacket) {
    EXPECT_EQ(cut({}), "");
    EXPECT_EQ(cut({{698, 0}, {698, 0}}), "0-2 "); // 1400 bytes
    EXPECT_EQ(cut({{698, 0}, {699, 0}}), "0-1 1-2 ");
    EXPECT_EQ(cut({{698, 0}, {698, 0}}, {5, 4}), "0-1 1-2 ");
}

TEST(BatchesTest, KeepAnAnswerBelow64KB) {
    EXPECT_EQ(cut({{8, 65'000}, {8, 531}}), "0-2 "); // 65535 bytes
    EXPECT_EQ(cut({{8, 65'000}, {8, 532}}), "0-1 1-2 ");
}

TEST(BatchesTest, LeaveTooLongItemsAlone) {
    EXPECT_EQ(cut({{8, 20}, {8, 2'000'000}, {8, 20}, {5'000, 12}, {8, 20}}),
              "0-1 1-2 2-3 3-4 4-5 ");
}

} // namespace
