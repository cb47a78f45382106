#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PluginObjects.h"
#include "headless/xplm/Simulator.h"
#include "plugin/DatarefAccessors.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DatarefAccessorsTest : public testing::Test {
protected:
    headless::Simulator simulator;
    PluginObjects objects;
    FakeDatarefProvider& provider = objects.provider;
    int refcon = 0;
    int number = 0;
    float real = 0.0F;
    char byte = 0;
};

TEST_F(DatarefAccessorsTest, ForwardsScalarsWithTheirArguments) {
    objects.Publish();
    SetInt(&refcon, -5);
    SetFloat(&refcon, 0.5F);
    SetDouble(&refcon, 0.25);
    EXPECT_THAT(provider.calls, ElementsAre("SetInt", "SetFloat", "SetDouble"));
    EXPECT_EQ(provider.lastRefcon, &refcon);
    EXPECT_EQ(provider.lastInt, -5);
    EXPECT_EQ(provider.lastFloat, 0.5F);
    EXPECT_EQ(provider.lastDouble, 0.25);
}

TEST_F(DatarefAccessorsTest, ReturnsWhatTheProviderReturnsForScalars) {
    objects.Publish();
    provider.intResult = -5;
    provider.floatResult = 0.5F;
    provider.doubleResult = 0.25;
    EXPECT_EQ(GetInt(&refcon), -5);
    EXPECT_EQ(GetFloat(&refcon), 0.5F);
    EXPECT_EQ(GetDouble(&refcon), 0.25);
    EXPECT_THAT(provider.calls, ElementsAre("GetInt", "GetFloat", "GetDouble"));
    EXPECT_EQ(provider.lastRefcon, &refcon);
}

TEST_F(DatarefAccessorsTest, ForwardsAnIntArray) {
    objects.Publish();
    provider.intResult = 3;
    EXPECT_EQ(GetIntArray(&refcon, &number, 1, 2), 3);
    EXPECT_EQ(provider.lastOffsetAndCount, std::pair(1, 2));
    SetIntArray(&refcon, &number, 4, 5);
    EXPECT_EQ(provider.lastOffsetAndCount, std::pair(4, 5));
    EXPECT_THAT(provider.calls, ElementsAre("GetIntArray", "SetIntArray"));
    EXPECT_EQ(provider.lastValues, &number);
    EXPECT_EQ(provider.lastRefcon, &refcon);
}

TEST_F(DatarefAccessorsTest, ForwardsAFloatArray) {
    objects.Publish();
    provider.intResult = 3;
    EXPECT_EQ(GetFloatArray(&refcon, &real, 1, 2), 3);
    EXPECT_EQ(provider.lastOffsetAndCount, std::pair(1, 2));
    SetFloatArray(&refcon, &real, 4, 5);
    EXPECT_EQ(provider.lastOffsetAndCount, std::pair(4, 5));
    EXPECT_THAT(provider.calls, ElementsAre("GetFloatArray", "SetFloatArray"));
    EXPECT_EQ(provider.lastValues, &real);
    EXPECT_EQ(provider.lastRefcon, &refcon);
}

TEST_F(DatarefAccessorsTest, ForwardsAByteArrayToTheBytesOfTheProvider) {
    objects.Publish();
    provider.intResult = 3;
    EXPECT_EQ(GetByteArray(&refcon, &byte, 1, 2), 3);
    EXPECT_EQ(provider.lastOffsetAndCount, std::pair(1, 2));
    SetByteArray(&refcon, &byte, 4, 5);
    EXPECT_EQ(provider.lastOffsetAndCount, std::pair(4, 5));
    EXPECT_THAT(provider.calls, ElementsAre("GetBytes", "SetBytes"));
    EXPECT_EQ(provider.lastValues, &byte);
    EXPECT_EQ(provider.lastRefcon, &refcon);
}

class DatarefAccessorsWithoutValuesTest : public DatarefAccessorsTest {
protected:
    void setAll() {
        SetInt(&refcon, 5);
        SetFloat(&refcon, 5.0F);
        SetDouble(&refcon, 5.0);
        SetIntArray(&refcon, &number, 0, 1);
        SetFloatArray(&refcon, &real, 0, 1);
        SetByteArray(&refcon, &byte, 0, 1);
    }

    void expectZeros() {
        EXPECT_EQ(GetInt(&refcon), 0);
        EXPECT_EQ(GetFloat(&refcon), 0.0F);
        EXPECT_EQ(GetDouble(&refcon), 0.0);
        EXPECT_EQ(GetIntArray(&refcon, &number, 0, 1), 0);
        EXPECT_EQ(GetFloatArray(&refcon, &real, 0, 1), 0);
        EXPECT_EQ(GetByteArray(&refcon, &byte, 0, 1), 0);
    }
};

TEST_F(DatarefAccessorsWithoutValuesTest, ReadZeroAndWriteNothingWithoutAPlugin) {
    provider.intResult = 9;
    provider.floatResult = 9.0F;
    provider.doubleResult = 9.0;
    setAll();
    expectZeros();
    EXPECT_THAT(provider.calls, IsEmpty());
}

TEST_F(DatarefAccessorsWithoutValuesTest, ReadZeroAndWriteNothingWithoutAProvider) {
    XPlanePlugin plugin([](float, float, int, void*) { return -1.0F; }, &objects.observer,
                        &objects.resources, &objects.server, nullptr, &objects.simState,
                        &objects.logger);
    globalPlugin = &plugin;
    setAll();
    expectZeros();
}

TEST_F(DatarefAccessorsWithoutValuesTest, KeepAnExceptionFromTheSimulator) {
    objects.Publish();
    provider.intResult = 9;
    provider.floatResult = 9.0F;
    provider.doubleResult = 9.0;
    provider.onCall = [] { throw std::runtime_error("out of memory"); };
    setAll();
    expectZeros();
    EXPECT_EQ(provider.calls.size(), 12U);
}

} // namespace
