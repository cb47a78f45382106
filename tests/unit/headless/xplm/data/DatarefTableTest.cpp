#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/data/DatarefTable.h"

using headless::DatarefAccessors;
using headless::Refusal;
using headless::Simulator;

namespace {

// What the accessors below were asked, and what they hold.
struct Published {
    int number = 0;
    int lastOffset = 0;
    int lastCount = 0;
};

int readInt(void* refcon) {
    return static_cast<Published*>(refcon)->number;
}

void writeInt(void* refcon, int value) {
    static_cast<Published*>(refcon)->number = value;
}

int readInts(void* refcon, int* values, int offset, int max) {
    auto* published = static_cast<Published*>(refcon);
    published->lastOffset = offset;
    published->lastCount = max;
    if (values == nullptr) {
        return 2;
    }
    for (int i = 0; i < max; ++i) {
        values[i] = 40 + i;
    }
    return max;
}

} // namespace

class DatarefTableTest : public ::testing::Test {
protected:
    XPLMDataRef publish(const char* name) {
        DatarefAccessors accessors;
        accessors.readInt = &readInt;
        accessors.writeInt = &writeInt;
        accessors.readInts = &readInts;
        accessors.readRefcon = &read;
        accessors.writeRefcon = &written;
        return sim.Datarefs().Register(name, xplmType_Int | xplmType_IntArray, true, accessors);
    }

    Simulator sim;
    Published read;
    Published written;
};

TEST_F(DatarefTableTest, DoesNotFindAnUnknownName) {
    EXPECT_EQ(XPLMFindDataRef("sim/none"), nullptr);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownName), 1U);
    EXPECT_EQ(sim.Recorder().RecentRefusals().back().detail, "sim/none");
}

TEST_F(DatarefTableTest, DoesNotFindAPrefixOrAnotherCaseOfAName) {
    sim.Datarefs().Define({"sim/abc", xplmType_Int});
    EXPECT_EQ(XPLMFindDataRef("sim/ab"), nullptr);
    EXPECT_EQ(XPLMFindDataRef("SIM/abc"), nullptr);
    EXPECT_NE(XPLMFindDataRef("sim/abc"), nullptr);
}

TEST_F(DatarefTableTest, ANullNameIsHarmlessAndRecorded) {
    EXPECT_EQ(XPLMFindDataRef(nullptr), nullptr);
    EXPECT_EQ(publish(nullptr), nullptr);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NullText), 2U);
}

TEST_F(DatarefTableTest, DefiningANameTwiceIsRefused) {
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    EXPECT_THROW(sim.Datarefs().Define({"sim/a", xplmType_Float}), std::invalid_argument);
}

TEST_F(DatarefTableTest, TheHostReadsAndWritesByNameAlsoWhatIsReadOnlyForPlugins) {
    sim.Datarefs().Define({"t/int", xplmType_Int, 0, false});
    sim.Datarefs().Define({"t/float", xplmType_Float, 0, false});
    sim.Datarefs().Define({"t/double", xplmType_Double, 0, false});
    sim.Datarefs().Define({"t/floats", xplmType_FloatArray, 3, false});
    sim.Datarefs().SetInt("t/int", 3);
    sim.Datarefs().SetFloat("t/float", 1.5F);
    sim.Datarefs().SetDouble("t/double", 2.25);
    sim.Datarefs().SetFloatArray("t/floats", {1, 2, 3, 4});
    EXPECT_EQ(sim.Datarefs().GetInt("t/int"), 3);
    EXPECT_EQ(sim.Datarefs().GetFloat("t/float"), 1.5F);
    EXPECT_EQ(sim.Datarefs().GetDouble("t/double"), 2.25);
    EXPECT_EQ(sim.Datarefs().GetFloatArray("t/floats"), (std::vector<float>{1, 2, 3}));
}

TEST_F(DatarefTableTest, BytesAreFilledUpWithZerosAndTextEndsAtTheFirst) {
    sim.Datarefs().Define({"t/bytes", xplmType_Data, 5});
    sim.Datarefs().SetBytes("t/bytes", "abcd");
    sim.Datarefs().SetBytes("t/bytes", "xy");
    EXPECT_EQ(sim.Datarefs().GetBytes("t/bytes"), std::string("xy\0\0\0", 5));
    EXPECT_EQ(sim.Datarefs().GetText("t/bytes"), "xy");
    sim.Datarefs().SetBytes("t/bytes", "longer");
    EXPECT_EQ(sim.Datarefs().GetText("t/bytes"), "longe");
}

TEST_F(DatarefTableTest, HostAccessThrowsForAnUnknownNameAndForAnotherType) {
    sim.Datarefs().Define({"t/int", xplmType_Int});
    EXPECT_THROW(sim.Datarefs().GetInt("t/none"), std::out_of_range);
    EXPECT_THROW(sim.Datarefs().SetFloat("t/none", 1), std::out_of_range);
    EXPECT_THROW(sim.Datarefs().GetFloat("t/int"), std::invalid_argument);
    EXPECT_THROW(sim.Datarefs().SetIntArray("t/int", {1}), std::invalid_argument);
}

TEST_F(DatarefTableTest, APluginsDatarefIsReadAndWrittenThroughItsAccessorsAndRefcons) {
    const XPLMDataRef handle = publish("plugin/a");
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(XPLMFindDataRef("plugin/a"), handle);
    read.number = 5;
    EXPECT_EQ(XPLMGetDatai(handle), 5);
    XPLMSetDatai(handle, 8);
    EXPECT_EQ(written.number, 8);
    EXPECT_EQ(read.number, 5);
    EXPECT_EQ(sim.Datarefs().GetInt("plugin/a"), 5);
    EXPECT_EQ(sim.Datarefs().GetIntArray("plugin/a"), (std::vector<int>{40, 41}));
}

TEST_F(DatarefTableTest, APluginsArrayAccessorGetsOffsetAndCountAsTheyAre) {
    const XPLMDataRef handle = publish("plugin/a");
    int values[1] = {};
    XPLMGetDatavi(handle, values, -3, -7);
    EXPECT_EQ(read.lastOffset, -3);
    EXPECT_EQ(read.lastCount, -7);
}

TEST_F(DatarefTableTest, ANullAccessorSlotReadsAsZeroAndDropsWrites) {
    const XPLMDataRef handle =
        sim.Datarefs().Register("plugin/empty", xplmType_Float | xplmType_Data, true, {});
    char bytes[1] = {3};
    EXPECT_EQ(XPLMGetDataf(handle), 0.0F);
    EXPECT_EQ(XPLMGetDatab(handle, bytes, 0, 1), 0);
    XPLMSetDataf(handle, 1.0F);
    XPLMSetDatab(handle, bytes, 0, 1);
    EXPECT_EQ(bytes[0], 3);
}

TEST_F(DatarefTableTest, RegisteringATakenNameIsRefused) {
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    EXPECT_EQ(publish("sim/a"), nullptr);
    EXPECT_NE(publish("plugin/a"), nullptr);
    EXPECT_EQ(publish("plugin/a"), nullptr);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NameTaken), 2U);
}

TEST_F(DatarefTableTest, RegistrationsCanBeMadeToFail) {
    sim.Datarefs().RefuseRegistration("plugin/a");
    EXPECT_EQ(publish("plugin/a"), nullptr);
    EXPECT_NE(publish("plugin/b"), nullptr);
    sim.Datarefs().RefuseAllRegistrations(true);
    EXPECT_EQ(publish("plugin/c"), nullptr);
    sim.Datarefs().RefuseAllRegistrations(false);
    EXPECT_NE(publish("plugin/c"), nullptr);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::Ordered), 2U);
}

TEST_F(DatarefTableTest, AnUnregisteredDatarefIsNotFoundAndItsHandleIsStale) {
    const XPLMDataRef handle = publish("plugin/a");
    read.number = 5;
    XPLMUnregisterDataAccessor(handle);
    EXPECT_EQ(XPLMFindDataRef("plugin/a"), nullptr);
    EXPECT_EQ(XPLMGetDatai(handle), 0);
    XPLMSetDatai(handle, 6);
    EXPECT_EQ(written.number, 0);
    XPLMUnregisterDataAccessor(handle);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::StaleHandle), 3U);
}

TEST_F(DatarefTableTest, ANameThatIsRegisteredAgainHasItsFormerHandle) {
    const XPLMDataRef first = publish("plugin/a");
    XPLMUnregisterDataAccessor(first);
    const XPLMDataRef second = publish("plugin/a");
    EXPECT_EQ(second, first);
    read.number = 4;
    EXPECT_EQ(XPLMGetDatai(first), 4);
}

TEST_F(DatarefTableTest, TheSimulatorsOwnDatarefCannotBeUnregistered) {
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    const XPLMDataRef handle = XPLMFindDataRef("sim/a");
    XPLMUnregisterDataAccessor(handle);
    EXPECT_EQ(XPLMFindDataRef("sim/a"), handle);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NotRegistered), 1U);
}

TEST_F(DatarefTableTest, DroppingPluginDatarefsLeavesTheSimulatorsOwn) {
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    publish("plugin/a");
    publish("plugin/b");
    sim.Datarefs().DropOf(XPLM_PLUGIN_XPLANE);
    EXPECT_EQ(sim.Datarefs().Names(), (std::vector<std::string>{"sim/a"}));
}

TEST_F(DatarefTableTest, RegistrationThroughTheSdkPassesEverySlotOn) {
    static std::string asked;
    asked.clear();
    const XPLMDataRef handle = XPLMRegisterDataAccessor(
        "plugin/all", 63, 1, [](void* r) { return *static_cast<int*>(r); },
        [](void*, int) { asked += "i"; }, [](void*) { return 2.0F; },
        [](void*, float) { asked += "f"; }, [](void*) { return 3.0; },
        [](void*, double) { asked += "d"; }, [](void*, int*, int, int) { return 4; },
        [](void*, int*, int, int) { asked += "I"; }, [](void*, float*, int, int) { return 5; },
        [](void*, float*, int, int) { asked += "F"; }, [](void*, void*, int, int) { return 6; },
        [](void* r, void*, int, int) { asked += std::to_string(*static_cast<int*>(r)); },
        &read.number, &written.number);
    read.number = 1;
    written.number = 9;
    EXPECT_EQ(XPLMGetDataRefTypes(handle), 63);
    EXPECT_EQ(XPLMGetDatai(handle), 1);
    EXPECT_EQ(XPLMGetDataf(handle), 2.0F);
    EXPECT_EQ(XPLMGetDatad(handle), 3.0);
    EXPECT_EQ(XPLMGetDatavi(handle, nullptr, 0, 0), 4);
    EXPECT_EQ(XPLMGetDatavf(handle, nullptr, 0, 0), 5);
    EXPECT_EQ(XPLMGetDatab(handle, nullptr, 0, 0), 6);
    XPLMSetDatai(handle, 0);
    XPLMSetDataf(handle, 0);
    XPLMSetDatad(handle, 0);
    XPLMSetDatavi(handle, nullptr, 0, 0);
    XPLMSetDatavf(handle, nullptr, 0, 0);
    XPLMSetDatab(handle, nullptr, 0, 0);
    EXPECT_EQ(asked, "ifdIF9");
}
