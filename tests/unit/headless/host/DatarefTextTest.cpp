#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "headless/host/DatarefText.h"
#include "headless/xplm/data/DatarefTable.h"

using headless::CallRecorder;
using headless::Dataref;
using headless::DatarefTable;
using headless::formatDataref;
using headless::parseDataref;

class DatarefTextTest : public ::testing::Test {
protected:
    std::string through(XPLMDataTypeID type, int elements, const std::string& text) {
        const Dataref& dataref = table.Define({"t/" + std::to_string(++count), type, elements});
        parseDataref(dataref, text);
        return formatDataref(dataref);
    }

    headless::PluginContext context;
    CallRecorder recorder;
    DatarefTable table{context, recorder};
    int count = 0;
};

TEST_F(DatarefTextTest, WritesAndReadsEveryType) {
    EXPECT_EQ(through(xplmType_Int, 0, "-42"), "-42");
    EXPECT_EQ(through(xplmType_Float, 0, "0.1"), "0.1");
    EXPECT_EQ(through(xplmType_Double, 0, "0.1234567890123456"), "0.1234567890123456");
    EXPECT_EQ(through(xplmType_IntArray, 3, "1,2,3"), "1,2,3");
    EXPECT_EQ(through(xplmType_FloatArray, 2, "0.5,-1.25"), "0.5,-1.25");
    EXPECT_EQ(through(xplmType_Data, 20, "some text, here"), "some text, here");
}

TEST_F(DatarefTextTest, FewerElementsSetTheFirstOnesAndMoreAreDropped) {
    EXPECT_EQ(through(xplmType_IntArray, 3, "7"), "7,0,0");
    EXPECT_EQ(through(xplmType_IntArray, 2, "1,2,3"), "1,2");
}

TEST_F(DatarefTextTest, AShorterTextReplacesALongerOne) {
    const Dataref& dataref = table.Define({"t/text", xplmType_Data, 8});
    parseDataref(dataref, "longer");
    parseDataref(dataref, "abc");
    EXPECT_EQ(formatDataref(dataref), "abc");
    EXPECT_EQ(table.GetBytes("t/text"), std::string("abc\0\0\0\0\0", 8));
}

TEST_F(DatarefTextTest, TextOfAnotherShapeIsRefused) {
    EXPECT_THROW(through(xplmType_Int, 0, "1.5"), std::invalid_argument);
    EXPECT_THROW(through(xplmType_Int, 0, ""), std::invalid_argument);
    EXPECT_THROW(through(xplmType_Int, 0, "99999999999"), std::invalid_argument);
    EXPECT_THROW(through(xplmType_Float, 0, "x"), std::invalid_argument);
    EXPECT_THROW(through(xplmType_IntArray, 2, "1,"), std::invalid_argument);
    EXPECT_THROW(through(xplmType_Data, 2, "abc"), std::invalid_argument);
}
