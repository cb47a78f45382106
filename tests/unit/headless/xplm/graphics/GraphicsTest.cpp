#include <array>

#include <gtest/gtest.h>

#include "XPLMGraphics.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

class GraphicsTest : public ::testing::Test {
protected:
    Simulator sim;
};

TEST_F(GraphicsTest, TheReferenceIsTheOriginOfTheLocalFrame) {
    double x = 1;
    double y = 1;
    double z = 1;
    XPLMWorldToLocal(47.26, 11.34, 250.0, &x, &y, &z);
    EXPECT_EQ(x, 0.0);
    EXPECT_EQ(y, 250.0);
    EXPECT_EQ(z, 0.0);
    XPLMWorldToLocal(48.26, 12.34, 0.0, &x, &y, &z);
    EXPECT_NEAR(x, 75'549.831, 0.001) << "east";
    EXPECT_NEAR(z, -111'320.0, 0.001) << "north is against z";
}

TEST_F(GraphicsTest, ThereAndBackIsTheSamePlace) {
    double x = 0;
    double y = 0;
    double z = 0;
    XPLMWorldToLocal(-33.5, 151.2, 40.0, &x, &y, &z);
    double latitude = 0;
    double longitude = 0;
    double altitude = 0;
    XPLMLocalToWorld(x, y, z, &latitude, &longitude, &altitude);
    EXPECT_NEAR(latitude, -33.5, 1e-9);
    EXPECT_NEAR(longitude, 151.2, 1e-9);
    EXPECT_EQ(altitude, 40.0);
    XPLMLocalToWorld(x, y, z, nullptr, nullptr, nullptr);
}

TEST_F(GraphicsTest, TheFrameGoesTheShortWayAroundTheGlobe) {
    double x = 0;
    XPLMWorldToLocal(0.0, -169.66, 0.0, &x, nullptr, nullptr);
    EXPECT_NEAR(x, 13'523'419.693, 0.001) << "179 degrees to the east";
    double longitude = 0;
    XPLMLocalToWorld(x, 0.0, 0.0, nullptr, &longitude, nullptr);
    EXPECT_NEAR(longitude, -169.66, 1e-9);
}

TEST_F(GraphicsTest, TextureNumbersAreDifferent) {
    std::array<int, 3> numbers{};
    XPLMGenerateTextureNumbers(numbers.data(), 2);
    EXPECT_NE(numbers[0], 0);
    EXPECT_NE(numbers[0], numbers[1]);
    EXPECT_EQ(numbers[2], 0);
}

TEST_F(GraphicsTest, FontsHaveSizes) {
    int width = 0;
    int height = 0;
    int digitsOnly = 1;
    XPLMGetFontDimensions(xplmFont_Proportional, &width, &height, &digitsOnly);
    EXPECT_EQ(width, 6);
    EXPECT_EQ(height, 10);
    EXPECT_EQ(digitsOnly, 0);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, "four", 4), 24.0F);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, "four", 2), 12.0F);
}
