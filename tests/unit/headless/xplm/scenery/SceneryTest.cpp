#include <vector>

#include <gtest/gtest.h>

#include "XPLMInstance.h"
#include "XPLMScenery.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/instance/Instances.h"
#include "headless/xplm/scenery/Terrain.h"
#include "headless/xplm/utilities/SystemFolder.h"
#include "support/TemporaryDirectory.h"

using headless::Refusal;
using headless::Simulator;

class SceneryTest : public ::testing::Test {
protected:
    SceneryTest() {
        sim.Folder().Set(folder.Path(""));
        folder.Write("tree.obj", "");
    }

    TemporaryDirectory folder;
    Simulator sim;
};

TEST_F(SceneryTest, AProbeFindsFlatGround) {
    sim.Terrain().SetElevation(120.0);
    const XPLMProbeRef probe = XPLMCreateProbe(xplm_ProbeY);
    XPLMProbeInfo_t info{};
    info.structSize = sizeof info;
    EXPECT_EQ(XPLMProbeTerrainXYZ(probe, 5.0F, 900.0F, -7.0F, &info), xplm_ProbeHitTerrain);
    EXPECT_EQ(info.structSize, static_cast<int>(sizeof info));
    EXPECT_EQ(info.locationX, 5.0F);
    EXPECT_EQ(info.locationY, 120.0F);
    EXPECT_EQ(info.locationZ, -7.0F);
    EXPECT_EQ(info.normalY, 1.0F);
    EXPECT_EQ(info.velocityX, 0.0F);
    EXPECT_EQ(info.is_wet, 0);
    XPLMDestroyProbe(probe);
    EXPECT_EQ(XPLMProbeTerrainXYZ(probe, 0.0F, 0.0F, 0.0F, &info), xplm_ProbeError);
}

TEST_F(SceneryTest, MagneticIsTrue) {
    EXPECT_EQ(XPLMGetMagneticVariation(47.0, 11.0), 0.0F);
    EXPECT_EQ(XPLMDegTrueToDegMagnetic(90.0F), 90.0F);
    EXPECT_EQ(XPLMDegMagneticToDegTrue(90.0F), 90.0F);
}

TEST_F(SceneryTest, AnObjectIsAFileThatExists) {
    EXPECT_EQ(XPLMLoadObject("none.obj"), nullptr);
    EXPECT_EQ(XPLMLoadObject(nullptr), nullptr);
    const XPLMObjectRef object = XPLMLoadObject("tree.obj");
    ASSERT_NE(object, nullptr);
    XPLMUnloadObject(object);
    XPLMUnloadObject(object);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownHandle), 1U);
    EXPECT_EQ(XPLMLookupObjects("lib/tree.obj", 0, 0, nullptr, nullptr), 0);
}

TEST_F(SceneryTest, AnObjectIsLoadedInTheBackground) {
    std::vector<XPLMObjectRef> loaded;
    const auto keep = [](XPLMObjectRef object, void* list) {
        static_cast<std::vector<XPLMObjectRef>*>(list)->push_back(object);
    };
    XPLMLoadObjectAsync("tree.obj", keep, &loaded);
    XPLMLoadObjectAsync("none.obj", keep, &loaded);
    EXPECT_TRUE(loaded.empty());
    sim.RunFrame(0.1);
    ASSERT_EQ(loaded.size(), 2U);
    EXPECT_NE(loaded[0], nullptr);
    EXPECT_EQ(loaded[1], nullptr);
}

TEST_F(SceneryTest, AnInstanceKeepsItsPlaceAndItsValues) {
    const char* datarefs[] = {"own/a", "own/b", nullptr};
    const XPLMInstanceRef instance = XPLMCreateInstance(XPLMLoadObject("tree.obj"), datarefs);
    ASSERT_NE(instance, nullptr);
    const float values[] = {1.5F, 2.5F};
    const XPLMDrawInfo_t place{sizeof place, 1, 2, 3, 4, 5, 6};
    XPLMInstanceSetPosition(instance, &place, values);
    const headless::SceneryInstance& kept = *sim.Instances().Resolve(instance);
    EXPECT_EQ(kept.datarefs, (std::vector<std::string>{"own/a", "own/b"}));
    EXPECT_EQ(kept.values, (std::vector<float>{1.5F, 2.5F}));
    EXPECT_EQ(kept.position.z, 3.0);
    const XPLMDrawInfoDouble_t precise{sizeof precise, 0.1, 0, 0, 0, 0, 0.6};
    XPLMInstanceSetPositionDouble(instance, &precise, nullptr);
    XPLMInstanceSetAutoShift(instance);
    EXPECT_EQ(kept.position.x, 0.1);
    EXPECT_EQ(kept.position.roll, 0.6);
    EXPECT_EQ(kept.values[1], 2.5F);
    XPLMDestroyInstance(instance);
    EXPECT_EQ(XPLMCreateInstance(nullptr, datarefs), nullptr);
}
