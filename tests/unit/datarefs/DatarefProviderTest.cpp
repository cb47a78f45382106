#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatarefProviderFixture.h"
#include "datarefs/DatarefProvider.h"

namespace {

using testing::IsEmpty;
using DatarefProviderTest = DatarefProviderFixture;

TEST_F(DatarefProviderTest, TouchesNeitherTheFileNorTheSimulatorWhenItIsMade) {
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_FALSE(directory.Has(kConfigFile));
}

TEST_F(DatarefProviderTest, LeavesItsDatarefsWithTheSimulatorWhenItGoes) {
    provider->RegisterInt("kyr/a");
    provider.reset();
    EXPECT_NE(simulator.Datarefs().Lookup("kyr/a"), nullptr);
    EXPECT_THAT(simulator.Recorder().CallsOf("XPLMUnregisterDataAccessor"), IsEmpty());
}

TEST_F(DatarefProviderTest, LogsNothing) {
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/a");
    simulator.Datarefs().RefuseAllRegistrations(true);
    provider->RegisterInt("kyr/b");
    provider->ParseConfig();
    provider->ProcessFlightLoop();
    provider->SetInt(refcon(99), 1);
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(DatarefProviderTest, StartsEveryValueAtZero) {
    provider->RegisterInt("kyr/int");
    provider->RegisterFloat("kyr/float");
    provider->RegisterDouble("kyr/double");
    provider->RegisterIntArray(3, "kyr/ints");
    provider->RegisterFloatArray(2, "kyr/floats");
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    EXPECT_EQ(provider->GetFloat(refcon(2)), 0.0F);
    EXPECT_EQ(provider->GetDouble(refcon(3)), 0.0);
    EXPECT_EQ(intArray(4), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(floatArray(5), (std::vector<float>{0.0F, 0.0F}));
}

TEST_F(DatarefProviderTest, KeepsAnIntThatTheSimulatorWrites) {
    const XPLMDataRef handle = provider->RegisterInt("kyr/a");
    XPLMSetDatai(handle, -2147483647);
    EXPECT_EQ(XPLMGetDatai(handle), -2147483647);
    EXPECT_EQ(provider->GetInt(refcon(1)), -2147483647);
}

TEST_F(DatarefProviderTest, KeepsAFloatThatTheSimulatorWrites) {
    const XPLMDataRef handle = provider->RegisterFloat("kyr/a");
    XPLMSetDataf(handle, 0.1F);
    EXPECT_EQ(XPLMGetDataf(handle), 0.1F);
    EXPECT_EQ(provider->GetFloat(refcon(1)), 0.1F);
}

TEST_F(DatarefProviderTest, DropsWhatIsWrittenToADoubleAndReadsItAsZero) {
    const XPLMDataRef handle = provider->RegisterDouble("kyr/a");
    XPLMSetDatad(handle, 1.5);
    EXPECT_EQ(XPLMGetDatad(handle), 0.0);
    provider->SetDouble(refcon(1), 2.5);
    EXPECT_EQ(provider->GetDouble(refcon(1)), 0.0);
}

TEST_F(DatarefProviderTest, ReadsAByteArrayAsEmptyWhateverIsWrittenToIt) {
    const XPLMDataRef handle = provider->RegisterByteArray(8, "kyr/a");
    EXPECT_EQ(XPLMGetDatab(handle, nullptr, 0, 0), 0);
    std::string bytes = "12345678";
    XPLMSetDatab(handle, bytes.data(), 0, 8);
    std::string read = "--------";
    EXPECT_EQ(XPLMGetDatab(handle, read.data(), 0, 8), 0);
    EXPECT_EQ(read, "--------");
    EXPECT_EQ(bytes, "12345678");
}

TEST_F(DatarefProviderTest, ReadsAnUnknownRefconAsZeroAndDoesNotWriteIt) {
    provider->RegisterInt("kyr/a");
    int number = -7;
    float real = -7.0F;
    provider->SetInt(refcon(2), 5);
    provider->SetFloat(refcon(2), 5.0F);
    provider->SetIntArray(refcon(2), &number, 0, 1);
    provider->SetFloatArray(refcon(2), &real, 0, 1);
    EXPECT_EQ(provider->GetInt(refcon(2)), 0);
    EXPECT_EQ(provider->GetFloat(refcon(2)), 0.0F);
    EXPECT_EQ(provider->GetDouble(refcon(2)), 0.0);
    EXPECT_EQ(provider->GetIntArray(refcon(2), &number, 0, 1), 0);
    EXPECT_EQ(provider->GetIntArray(refcon(2), nullptr, 0, 0), 0);
    EXPECT_EQ(provider->GetFloatArray(refcon(2), &real, 0, 1), 0);
    EXPECT_EQ(provider->GetFloatArray(refcon(2), nullptr, 0, 0), 0);
    EXPECT_EQ(number, -7);
    EXPECT_EQ(real, -7.0F);
    EXPECT_EQ(provider->GetInt(nullptr), 0) << "refcon 0 is never given out";
}

TEST_F(DatarefProviderTest, CreatesNoEntryForAnUnknownRefconThatIsWritten) {
    provider->SetInt(refcon(1), 5);
    provider->SetFloat(refcon(2), 5.0F);
    provider->RegisterInt("kyr/a");
    provider->RegisterFloat("kyr/b");
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    EXPECT_EQ(provider->GetFloat(refcon(2)), 0.0F);
}

TEST_F(DatarefProviderTest, KnowsARefconInTheTypeOfItsDatarefOnly) {
    provider->RegisterInt("kyr/a");
    provider->SetFloat(refcon(1), 5.0F);
    EXPECT_EQ(provider->GetFloat(refcon(1)), 0.0F);
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    provider->SetInt(refcon(1), 6);
    EXPECT_EQ(provider->GetFloat(refcon(1)), 0.0F);
    EXPECT_EQ(provider->GetInt(refcon(1)), 6);
}

TEST_F(DatarefProviderTest, UnregistersAllThatItHasRegistered) {
    provider->RegisterInt("kyr/a");
    provider->RegisterFloatArray(3, "kyr/b");
    simulator.Datarefs().RefuseRegistration("kyr/c");
    provider->RegisterInt("kyr/c");
    provider->UnregisterAll();
    EXPECT_EQ(simulator.Datarefs().Lookup("kyr/a"), nullptr);
    EXPECT_EQ(simulator.Datarefs().Lookup("kyr/b"), nullptr);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMUnregisterDataAccessor").size(), 2U);
    EXPECT_EQ(simulator.Recorder().NullHandleCalls(), 0U);
    provider->UnregisterAll();
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMUnregisterDataAccessor").size(), 2U);
}

TEST_F(DatarefProviderTest, RegistersAgainWhatItHasUnregistered) {
    const XPLMPluginID editor = simulator.Plugins().AddPlugin("xplanesdk.examples.DataRefEditor");
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/b");
    provider->SetInt(refcon(1), 5);
    provider->UnregisterAll();
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
    EXPECT_NE(provider->RegisterFloat("kyr/a"), nullptr);
    EXPECT_EQ(directory.Read(kConfigFile), "\nkyr/a int\nkyr/b int") << "as it was declared";
    provider->ProcessFlightLoop();
    ASSERT_EQ(simulator.Plugins().Messages().size(), 1U);
    EXPECT_EQ(simulator.Plugins().Messages()[0].plugin, editor);
}

TEST_F(DatarefProviderTest, StartsEveryValueAtZeroAgainAfterARestart) {
    provider->RegisterInt("kyr/a");
    provider->SetInt(refcon(1), 5);
    restart();
    provider->RegisterInt("kyr/a");
    EXPECT_EQ(provider->GetInt(refcon(1)), 0);
}

} // namespace
