#include <gtest/gtest.h>

#include "XPLMMap.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

class MapTest : public ::testing::Test {
protected:
    static XPLMMapLayerID make(const char* map, int* deletions) {
        XPLMCreateMapLayer_t layer{};
        layer.structSize = sizeof layer;
        layer.mapToCreateLayerIn = map;
        layer.layerName = "A layer";
        layer.refcon = deletions;
        layer.willBeDeletedCallback = [](XPLMMapLayerID, void* count) {
            ++*static_cast<int*>(count);
        };
        return XPLMCreateMapLayer(&layer);
    }

    Simulator sim;
    int deletions = 0;
};

TEST_F(MapTest, TheUsersMapExists) {
    EXPECT_EQ(XPLMMapExists(XPLM_MAP_USER_INTERFACE), 1);
    EXPECT_EQ(XPLMMapExists(XPLM_MAP_IOS), 0);
    EXPECT_EQ(make(XPLM_MAP_IOS, &deletions), nullptr);
}

TEST_F(MapTest, ALayerIsToldOfItsEnd) {
    const XPLMMapLayerID layer = make(XPLM_MAP_USER_INTERFACE, &deletions);
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(XPLMDestroyMapLayer(layer), 1);
    EXPECT_EQ(deletions, 1);
    EXPECT_EQ(XPLMDestroyMapLayer(layer), 0);
}

TEST_F(MapTest, ProjectsThereAndBack) {
    float x = 0;
    float y = 0;
    XPLMMapProject(nullptr, 48.0, 12.0, &x, &y);
    EXPECT_GT(x, 0.0F);
    EXPECT_GT(y, 0.0F);
    double latitude = 0;
    double longitude = 0;
    XPLMMapUnproject(nullptr, x, y, &latitude, &longitude);
    EXPECT_NEAR(latitude, 48.0, 1e-6);
    EXPECT_NEAR(longitude, 12.0, 1e-6);
    EXPECT_EQ(XPLMMapScaleMeter(nullptr, x, y), 1.0F);
    EXPECT_EQ(XPLMMapGetNorthHeading(nullptr, x, y), 0.0F);
}
