#include "common/SimStateInformation.h"

#include <gtest/gtest.h>

#include <string>

#include "headless/Simulator.h"

namespace {

class SimStateInformationTest : public testing::Test {
protected:
    void defineDescription(const std::string& text) {
        simulator.Datarefs().Define(
            {.name = "sim/aircraft/view/acf_descrip", .types = xplmType_Data, .elements = 260});
        describe(text);
    }

    void describe(const std::string& text) {
        simulator.Datarefs().SetBytes("sim/aircraft/view/acf_descrip", text);
    }

    headless::Simulator simulator;
    SimStateInformation state;
};

TEST_F(SimStateInformationTest, StartsNotLoadedWithIdZero) {
    EXPECT_FALSE(state.IsPlaneLoaded());
    EXPECT_EQ(state.GetPlaneId(), 0U);
}

TEST_F(SimStateInformationTest, KeepsTheFlagThatItIsGiven) {
    state.SetPlaneLoaded(true);
    EXPECT_TRUE(state.IsPlaneLoaded());
    state.SetPlaneLoaded(false);
    EXPECT_FALSE(state.IsPlaneLoaded());
}

TEST_F(SimStateInformationTest, HashesNothingToZero) {
    EXPECT_EQ(state.getMurmur32Hash("", 0, 0), 0U);
}

// Published test vectors of MurmurHash3_x86_32; below 4 bytes both forms agree.
TEST_F(SimStateInformationTest, HashesUpToThreeBytesAsTheStandardAlgorithmDoes) {
    EXPECT_EQ(state.getMurmur32Hash("", 0, 1), 0x514E28B7U);
    EXPECT_EQ(state.getMurmur32Hash("\xFF\xFF\xFF", 0, 0xFFFFFFFF), 0x81F16F39U);
    EXPECT_EQ(state.getMurmur32Hash("\x21", 1, 0), 0x72661CF4U);
    EXPECT_EQ(state.getMurmur32Hash("\x21\x43", 2, 0), 0xA0F7B07AU);
    EXPECT_EQ(state.getMurmur32Hash("\x21\x43\x65", 3, 0), 0x7E4A8634U);
}

} // namespace
