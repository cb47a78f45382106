#include <string>

#include <gtest/gtest.h>

#include "common/SimStateInformation.h"
#include "headless/xplm/Simulator.h"

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

// The values below are MurmurHash3_x86_32 finished with the length modulo 4.
TEST_F(SimStateInformationTest, HashesAMultipleOfFourBytesAsIfTheLengthWereZeroAtTheEnd) {
    EXPECT_EQ(state.getMurmur32Hash("\x21\x43\x65\x87", 4, 0), 0xCDC964B6U);
    EXPECT_EQ(state.getMurmur32Hash("\x21\x43\x65\x87", 4, 0x5082EDEE), 0xFF19274AU);
    EXPECT_EQ(state.getMurmur32Hash("abcdefgh", 8, 0), 0xF05F4450U);
    EXPECT_EQ(state.getMurmur32Hash("Hello, world", 12, 0x9747B28C), 0xCCD45F99U);
}

TEST_F(SimStateInformationTest, HashesLongerDataWithTheRemainderOnly) {
    EXPECT_EQ(state.getMurmur32Hash("abcde", 5, 0), 0x32C7A6D1U);
    EXPECT_EQ(state.getMurmur32Hash("abcdef", 6, 0), 0xE603EAA8U);
    EXPECT_EQ(state.getMurmur32Hash("abcdefg", 7, 0), 0xF833FFF3U);
}

TEST_F(SimStateInformationTest, HashesBytesAbove127AsUnsigned) {
    EXPECT_EQ(state.getMurmur32Hash("\x80\xFF\xFE\x81", 4, 0), 0x83981D91U);
    EXPECT_EQ(state.getMurmur32Hash("\xFF\xFF\xFF\xFF", 4, 0), 0xB653E015U);
}

TEST_F(SimStateInformationTest, HashesWithoutTouchingTheId) {
    state.getMurmur32Hash("abcdefgh", 8, 0);
    EXPECT_EQ(state.GetPlaneId(), 0U);
}

TEST_F(SimStateInformationTest, HashesAShortDescriptionWithItsZeroPadding) {
    defineDescription("Cessna Skyhawk");
    state.ReadPlaneId();
    EXPECT_EQ(state.GetPlaneId(), 0x9C1761ACU);
}

TEST_F(SimStateInformationTest, HashesTheFirstHundredBytesOfALongDescription) {
    defineDescription(std::string(100, 'x'));
    state.ReadPlaneId();
    EXPECT_EQ(state.GetPlaneId(), 0xAF6333A7U);
}

TEST_F(SimStateInformationTest, GivesTheSameIdToDescriptionsThatDifferAfterTheHundredthByte) {
    defineDescription(std::string(100, 'x') + "one");
    state.ReadPlaneId();
    EXPECT_EQ(state.GetPlaneId(), 0xAF6333A7U);
    describe(std::string(100, 'x') + "another");
    state.ReadPlaneId();
    EXPECT_EQ(state.GetPlaneId(), 0xAF6333A7U);
}

TEST_F(SimStateInformationTest, GivesAnotherIdWhenTheHundredthByteDiffers) {
    defineDescription(std::string(99, 'x') + "y");
    state.ReadPlaneId();
    EXPECT_NE(state.GetPlaneId(), 0xAF6333A7U);
}

TEST_F(SimStateInformationTest, HashesAHundredZerosWhenThereIsNoDescription) {
    state.ReadPlaneId();
    EXPECT_EQ(state.GetPlaneId(), 0xF5EB6707U);
    EXPECT_EQ(simulator.Log().Text(), "");
}

TEST_F(SimStateInformationTest, LooksTheDescriptionUpOnEveryRead) {
    state.ReadPlaneId();
    defineDescription("Piper PA-28");
    state.ReadPlaneId();
    EXPECT_EQ(state.GetPlaneId(), 0xDA078797U);
}

TEST_F(SimStateInformationTest, ChangesTheIdOnlyWhenItIsRead) {
    defineDescription("Cessna Skyhawk");
    state.ReadPlaneId();
    describe("Piper PA-28");
    state.SetPlaneLoaded(true);
    EXPECT_EQ(state.GetPlaneId(), 0x9C1761ACU);
    state.ReadPlaneId();
    EXPECT_EQ(state.GetPlaneId(), 0xDA078797U);
}

TEST_F(SimStateInformationTest, KeepsTheIdOfTheLastAircraftAfterAnUnload) {
    defineDescription("Cessna Skyhawk");
    state.SetPlaneLoaded(true);
    state.ReadPlaneId();
    state.SetPlaneLoaded(false);
    EXPECT_FALSE(state.IsPlaneLoaded());
    EXPECT_EQ(state.GetPlaneId(), 0x9C1761ACU);
}

} // namespace
