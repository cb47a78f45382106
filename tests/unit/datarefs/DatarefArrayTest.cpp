#include <climits>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatarefProviderFixture.h"
#include "datarefs/DatarefProvider.h"

namespace {

using DatarefProviderTest = DatarefProviderFixture;

// One read of an array of 4 elements that holds 1, 2, 3 and, as ever, 0.
struct ArrayRead {
    std::string name;
    int offset;
    int max;
    int result;
    std::vector<int> copied;
};

void PrintTo(const ArrayRead& row, std::ostream* out) {
    *out << row.name;
}

class DatarefArrayReadTest : public DatarefProviderFixture,
                             public testing::WithParamInterface<ArrayRead> {};

TEST_P(DatarefArrayReadTest, CopiesWhatIsThereOfAnIntArray) {
    const XPLMDataRef handle = provider->RegisterIntArray(4, "kyr/a");
    int written[] = {1, 2, 3};
    XPLMSetDatavi(handle, written, 0, 3);
    std::vector<int> read(10, -7);
    EXPECT_EQ(XPLMGetDatavi(handle, read.data(), GetParam().offset, GetParam().max),
              GetParam().result);
    EXPECT_EQ(read, GetParam().copied);
}

TEST_P(DatarefArrayReadTest, CopiesWhatIsThereOfAFloatArray) {
    const XPLMDataRef handle = provider->RegisterFloatArray(4, "kyr/a");
    float written[] = {1.0F, 2.0F, 3.0F};
    XPLMSetDatavf(handle, written, 0, 3);
    std::vector<float> read(10, -7.0F);
    EXPECT_EQ(XPLMGetDatavf(handle, read.data(), GetParam().offset, GetParam().max),
              GetParam().result);
    EXPECT_EQ(read, std::vector<float>(GetParam().copied.begin(), GetParam().copied.end()));
}

INSTANTIATE_TEST_SUITE_P(
    AllRanges, DatarefArrayReadTest,
    testing::Values(
        ArrayRead{"Whole", 0, 4, 4, {1, 2, 3, 0, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"First", 0, 1, 1, {1, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"BeyondTheEnd", 2, 10, 2, {3, 0, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"TheLastElement", 3, 1, 1, {0, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromTheMiddle", 1, INT_MAX, 3, {2, 3, 0, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromTheEnd", 4, 1, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromFarBeyondTheEnd", INT_MAX, 1, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"FromANegativeOffset", -1, 2, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"NoElements", 0, 0, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}},
        ArrayRead{"ANegativeCount", 0, -1, 0, {-7, -7, -7, -7, -7, -7, -7, -7, -7, -7}}),
    [](const auto& row) { return row.param.name; });

TEST_F(DatarefProviderTest, AnswersTheSizeQueryOfAnArrayWhateverTheRange) {
    provider->RegisterIntArray(4, "kyr/a");
    provider->RegisterFloatArray(6, "kyr/b");
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, 0, 0), 4);
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, -1, -1), 4);
    EXPECT_EQ(provider->GetIntArray(refcon(1), nullptr, 9, 9), 4);
    EXPECT_EQ(provider->GetFloatArray(refcon(2), nullptr, 0, 0), 6);
}

// One write of 8, 9, 10, 11, 12 to an array of 4 zeros.
struct ArrayWrite {
    std::string name;
    int offset;
    int count;
    std::vector<int> content;
};

void PrintTo(const ArrayWrite& row, std::ostream* out) {
    *out << row.name;
}

class DatarefArrayWriteTest : public DatarefProviderFixture,
                              public testing::WithParamInterface<ArrayWrite> {};

TEST_P(DatarefArrayWriteTest, IsWholeOrRefusedInAnIntArray) {
    const XPLMDataRef handle = provider->RegisterIntArray(4, "kyr/a");
    int values[] = {8, 9, 10, 11, 12};
    XPLMSetDatavi(handle, values, GetParam().offset, GetParam().count);
    EXPECT_EQ(simulator.Datarefs().GetIntArray("kyr/a"), GetParam().content);
}

TEST_P(DatarefArrayWriteTest, IsWholeOrRefusedInAFloatArray) {
    const XPLMDataRef handle = provider->RegisterFloatArray(4, "kyr/a");
    float values[] = {8.0F, 9.0F, 10.0F, 11.0F, 12.0F};
    XPLMSetDatavf(handle, values, GetParam().offset, GetParam().count);
    EXPECT_EQ(simulator.Datarefs().GetFloatArray("kyr/a"),
              std::vector<float>(GetParam().content.begin(), GetParam().content.end()));
}

INSTANTIATE_TEST_SUITE_P(AllRanges, DatarefArrayWriteTest,
                         testing::Values(ArrayWrite{"AllButTheLast", 0, 3, {8, 9, 10, 0}},
                                         ArrayWrite{"First", 0, 1, {8, 0, 0, 0}},
                                         ArrayWrite{"Middle", 1, 2, {0, 8, 9, 0}},
                                         ArrayWrite{"LastButOne", 2, 1, {0, 0, 8, 0}},
                                         ArrayWrite{"Whole", 0, 4, {0, 0, 0, 0}},
                                         ArrayWrite{"TheLast", 3, 1, {0, 0, 0, 0}},
                                         ArrayWrite{"UpToTheLast", 2, 2, {0, 0, 0, 0}},
                                         ArrayWrite{"BeyondTheEnd", 0, 5, {0, 0, 0, 0}},
                                         ArrayWrite{"AtTheEnd", 4, 1, {0, 0, 0, 0}},
                                         ArrayWrite{"NegativeOffset", -1, 1, {0, 0, 0, 0}},
                                         ArrayWrite{"NoElements", 0, 0, {0, 0, 0, 0}},
                                         ArrayWrite{"NegativeCount", 0, -1, {0, 0, 0, 0}},
                                         ArrayWrite{"OverflowingSum", 1, INT_MAX, {0, 0, 0, 0}}),
                         [](const auto& row) { return row.param.name; });

TEST_F(DatarefProviderTest, NeverWritesAnArrayOfOneElement) {
    provider->RegisterFloatArray(1, "kyr/a");
    provider->RegisterIntArray(1, "kyr/b");
    float real = 5.0F;
    int number = 5;
    provider->SetFloatArray(refcon(1), &real, 0, 1);
    provider->SetIntArray(refcon(2), &number, 0, 1);
    EXPECT_EQ(floatArray(1), std::vector<float>{0.0F});
    EXPECT_EQ(intArray(2), std::vector<int>{0});
}

} // namespace
