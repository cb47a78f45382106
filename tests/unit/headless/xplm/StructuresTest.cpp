// The layouts of the SDK's structures on 64-bit systems: plugins are built against its own headers.

#include <cstddef>

#include <gtest/gtest.h>

#include "XPLMCamera.h"
#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMInstance.h"
#include "XPLMMap.h"
#include "XPLMPlanes.h"
#include "XPLMProcessing.h"
#include "XPLMScenery.h"
#include "XPLMWeather.h"
#include "XPWidgetDefs.h"
#include "XPWidgetUtils.h"

TEST(StructuresTest, HaveTheSdksSizes) {
    EXPECT_EQ(sizeof(XPLMDataRefInfo_t), 32U);
    EXPECT_EQ(sizeof(XPLMCreateFlightLoop_t), 24U);
    EXPECT_EQ(sizeof(XPLMCreateWindow_t), 88U);
    EXPECT_EQ(sizeof(XPLMCustomizeAvionics_t), 104U);
    EXPECT_EQ(sizeof(XPLMCreateAvionics_t), 152U);
    EXPECT_EQ(sizeof(XPLMProbeInfo_t), 44U);
    EXPECT_EQ(sizeof(XPLMDrawInfo_t), 28U);
    EXPECT_EQ(sizeof(XPLMDrawInfoDouble_t), 56U);
    EXPECT_EQ(sizeof(XPLMCameraPosition_t), 28U);
    EXPECT_EQ(sizeof(XPLMCreateMapLayer_t), 88U);
    EXPECT_EQ(sizeof(XPLMPlaneDrawState_t), 44U);
    EXPECT_EQ(sizeof(XPLMWeatherInfo_t), 64U + 13U * 24U + 3U * 16U + 2U * 13U * 4U + 20U);
    EXPECT_EQ(sizeof(XPMouseState_t), 16U);
    EXPECT_EQ(sizeof(XPKeyState_t), 12U);
    EXPECT_EQ(sizeof(XPWidgetCreate_t), 48U);
    EXPECT_EQ(sizeof(XPLMFixedString150_t), 150U);
}

TEST(StructuresTest, HaveTheSdksOffsets) {
    EXPECT_EQ(offsetof(XPLMCreateWindow_t, drawWindowFunc), 24U);
    EXPECT_EQ(offsetof(XPLMCreateWindow_t, refcon), 64U);
    EXPECT_EQ(offsetof(XPLMCreateWindow_t, decorateAsFloatingWindow), 72U);
    EXPECT_EQ(offsetof(XPLMCreateWindow_t, layer), 76U);
    EXPECT_EQ(offsetof(XPLMCreateWindow_t, handleRightClickFunc), 80U);
    EXPECT_EQ(offsetof(XPLMDataRefInfo_t, name), 8U);
    EXPECT_EQ(offsetof(XPLMDataRefInfo_t, owner), 24U);
    EXPECT_EQ(offsetof(XPLMCreateFlightLoop_t, callbackFunc), 8U);
    EXPECT_EQ(offsetof(XPLMCreateMapLayer_t, showUiToggle), 64U);
    EXPECT_EQ(offsetof(XPLMWeatherInfo_t, wind_layers), 64U);
}
