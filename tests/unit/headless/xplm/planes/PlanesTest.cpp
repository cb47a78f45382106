#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMPlanes.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/planes/Aircraft.h"
#include "headless/xplm/utilities/SystemFolder.h"

using headless::PluginContext;
using headless::Refusal;
using headless::Simulator;

class PlanesTest : public ::testing::Test {
protected:
    PlanesTest() { sim.Folder().Set("/sim"); }

    XPLMPluginID add(const std::string& signature) {
        return sim.Plugins().AddPlugin(
            signature, {.receive = [this](XPLMPluginID /*from*/, int message, void* parameter) {
                received.push_back(message);
                EXPECT_EQ(parameter, nullptr);
            }});
    }

    static std::string modelOf(int index) {
        std::array<char, 256> file{};
        std::array<char, 512> path{};
        XPLMGetNthAircraftModel(index, file.data(), path.data());
        return std::string(file.data()) + " in " + path.data();
    }

    Simulator sim;
    std::vector<int> received;
};

TEST_F(PlanesTest, OneOfTwentyIsActive) {
    int total = 0;
    int active = 0;
    XPLMPluginID controller = 0;
    XPLMCountAircraft(&total, &active, &controller);
    EXPECT_EQ(total, 20);
    EXPECT_EQ(active, 1);
    EXPECT_EQ(controller, XPLM_NO_PLUGIN_ID);
    XPLMCountAircraft(nullptr, nullptr, nullptr);
    EXPECT_EQ(modelOf(0), "Orvane Trainer.acf in /sim/Aircraft/Orvane Trainer/Orvane Trainer.acf");
    EXPECT_EQ(modelOf(1), " in ");
    EXPECT_EQ(modelOf(20), " in ");
}

TEST_F(PlanesTest, AnotherAircraftOfTheUsersIsTold) {
    add("tests.one");
    XPLMSetUsersAircraft("Aircraft/Other/Other.acf");
    EXPECT_EQ(modelOf(0), "Other.acf in /sim/Aircraft/Other/Other.acf");
    EXPECT_EQ(received, (std::vector<int>{106, 102, 108}));
}

TEST_F(PlanesTest, OnlyWhoAcquiredThemControlsThem) {
    XPLMSetActiveAircraftCount(5);
    EXPECT_EQ(sim.Aircraft().Active(), 1);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NotRegistered), 1U);
    char model[] = "Aircraft/A.acf";
    char* models[] = {model, nullptr};
    EXPECT_EQ(XPLMAcquirePlanes(models, nullptr, nullptr), 1);
    XPLMSetActiveAircraftCount(5);
    EXPECT_EQ(sim.Aircraft().Active(), 5);
    XPLMSetActiveAircraftCount(50);
    EXPECT_EQ(sim.Aircraft().Active(), 20);
    EXPECT_EQ(modelOf(1), "A.acf in /sim/Aircraft/A.acf");
    XPLMSetAircraftModel(2, "/other/B.acf");
    EXPECT_EQ(modelOf(2), "B.acf in /other/B.acf");
    XPLMReleasePlanes();
    EXPECT_EQ(sim.Aircraft().Active(), 1);
}

TEST_F(PlanesTest, WhoWaitsIsToldWhenThePlanesAreFree) {
    const XPLMPluginID first = add("tests.first");
    const XPLMPluginID second = add("tests.second");
    int told = 0;
    const auto tell = [](void* count) { ++*static_cast<int*>(count); };
    {
        const PluginContext::Call call(sim.Context(), first, "test");
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, nullptr, nullptr), 1);
    }
    {
        const PluginContext::Call call(sim.Context(), second, "test");
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, tell, &told), 0);
    }
    EXPECT_EQ(received, (std::vector<int>{111})) << "the first is asked to release them";
    sim.DropRegistrations(first);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(sim.Aircraft().Controller(), XPLM_NO_PLUGIN_ID);
}

TEST_F(PlanesTest, TheUserIsPlaced) {
    for (const char* name :
         {"latitude", "longitude", "elevation", "local_x", "local_y", "local_z"}) {
        sim.Datarefs().Define({"sim/flightmodel/position/" + std::string(name), xplmType_Double});
    }
    sim.Datarefs().Define({"sim/flightmodel/position/psi", xplmType_Float});
    XPLMPlaceUserAtLocation(47.26, 11.34, 900.0F, 270.0F, 50.0F);
    EXPECT_EQ(sim.Datarefs().GetDouble("sim/flightmodel/position/latitude"), 47.26);
    EXPECT_EQ(sim.Datarefs().GetDouble("sim/flightmodel/position/local_y"), 900.0);
    EXPECT_EQ(sim.Datarefs().GetFloat("sim/flightmodel/position/psi"), 270.0F);
}
