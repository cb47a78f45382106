#include "OutputInfoTest.h"

#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Resolution of the name.

TEST_F(OutputInfoTest, RegistersAnOwnDatarefOfEachTypeWithTheProvider) {
    provider.handle = simulator.Datarefs().Lookup("sim/int");
    make({.name = "kyr/int", .type = 1, .count = 9});
    make({.name = "kyr/float", .type = 2, .count = 9});
    make({.name = "kyr/ints", .type = 3, .first = 1, .count = 7});
    make({.name = "kyr/floats", .type = 4, .first = 1, .count = 8});
    EXPECT_THAT(provider.calls,
                ElementsAre("RegisterInt kyr/int", "RegisterFloat kyr/float",
                            "RegisterIntArray 7 kyr/ints", "RegisterFloatArray 8 kyr/floats"));
    EXPECT_THAT(found(), IsEmpty()) << "a handle of the provider's is not looked up again";
    EXPECT_THAT(observer.registered, IsEmpty());
}

TEST_F(OutputInfoTest, ReadsTheHandleThatTheProviderReturned) {
    provider.handle = simulator.Datarefs().Lookup("sim/int");
    EXPECT_EQ(data({.id = 5, .name = "kyr/int", .type = 1}), "05 00 00 00 04 00 00 00 FE FF FF FF");
}

TEST_F(OutputInfoTest, LooksUpAnOwnDatarefThatTheProviderDidNotRegister) {
    define("kyr/int", xplmType_Int);
    simulator.Datarefs().SetInt("kyr/int", 9);
    EXPECT_EQ(data({.id = 5, .name = "kyr/int", .type = 1}), "05 00 00 00 04 00 00 00 09 00 00 00");
    EXPECT_THAT(provider.calls, ElementsAre("RegisterInt kyr/int"));
    EXPECT_THAT(found(), ElementsAre("kyr/int"));
}

TEST_F(OutputInfoTest, LooksUpANameWithoutThePrefixInTheSimulator) {
    for (const int type : {1, 2, 3, 4}) {
        make({.name = "sim/float", .type = type, .count = 1});
    }
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_THAT(found(), ElementsAre("sim/float", "sim/float", "sim/float", "sim/float"));
}

TEST_F(OutputInfoTest, TakesExactlyTheFourCharactersOfThePrefix) {
    make({.name = "kyr", .type = 1});
    make({.name = "Kyr/a", .type = 1});
    make({.name = " kyr/a", .type = 1});
    make({.name = "kyrx/a", .type = 1});
    EXPECT_THAT(provider.calls, IsEmpty());
    make({.name = "kyr/", .type = 1});
    EXPECT_THAT(provider.calls, ElementsAre("RegisterInt kyr/"));
}

TEST_F(OutputInfoTest, SubscribesToAnOwnCommandAndLooksUpNoDataref) {
    const auto output = make({.id = 0xFEDCBA98, .name = "kyr/command", .type = 6});
    EXPECT_TRUE(output->IsCommand());
    EXPECT_THAT(observer.registered, ElementsAre(FakeCommandObserver::Subscription{
                                         &protocol, 0xFEDCBA98, "kyr/command"}));
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
}

TEST_F(OutputInfoTest, DoesNotSubscribeToACommandOfTheSimulators) {
    simulator.Commands().Define("sim/command", "a command");
    const auto output = make({.id = 5, .name = "sim/command", .type = 6});
    EXPECT_FALSE(output->IsCommand());
    EXPECT_THAT(observer.registered, IsEmpty());
    EXPECT_THAT(found(), ElementsAre("sim/command"));
    EXPECT_EQ(data(*output), "05 00 00 00") << "the dummy of an output without a value";
}

TEST_F(OutputInfoTest, LooksUpAnOwnNameOfAnyOtherType) {
    for (const int type : {0, 5, 7, -1}) {
        EXPECT_FALSE(make({.name = "kyr/a", .type = type})->IsCommand());
    }
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_THAT(observer.registered, IsEmpty());
    EXPECT_THAT(found(), ElementsAre("kyr/a", "kyr/a", "kyr/a", "kyr/a"));
}

TEST_F(OutputInfoTest, IsNotACommandWhenItIsADataref) {
    EXPECT_FALSE(make({.name = "sim/int", .type = 1})->IsCommand());
    EXPECT_FALSE(make({.name = "kyr/int", .type = 1})->IsCommand());
}

TEST_F(OutputInfoTest, DoesNotLookAgainForADatarefThatAppearsLater) {
    const auto output = make({.id = 5, .name = "sim/later", .type = 1});
    define("sim/later", xplmType_Int);
    simulator.Datarefs().SetInt("sim/later", 9);
    EXPECT_EQ(data(*output), "05 00 00 00 04 00 00 00 00 00 00 00");
}

// Commands.

class OutputInfoCommandTest : public OutputInfoTest {
protected:
    const std::string kUp = "05 00 00 00 01 00 00 00 00";
    const std::string kDown = "05 00 00 00 01 00 00 00 01";
    std::unique_ptr<OutputInfo> output = make({.id = 5, .name = "kyr/command", .type = 6});
};

TEST_F(OutputInfoCommandTest, StartsUp) {
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, ReportsAPressThatEndedBetweenTwoReportsOnce) {
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kDown);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, ReportsAHeldCommandEachTime) {
    output->SetCommandState(true);
    EXPECT_EQ(data(*output), kDown);
    output->SetCommandState(true);
    EXPECT_EQ(data(*output), kDown);
    EXPECT_EQ(data(*output), kDown);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, RemembersAPressUntilItIsReported) {
    output->SetCommandState(true);
    output->SetCommandState(false);
    output->SetCommandState(false);
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kDown);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, DoesNotTakeAContinueAfterTheReportForANewPress) {
    output->SetCommandState(true);
    EXPECT_EQ(data(*output), kDown);
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, KeepsAPressOverADummy) {
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(dummy(*output), "05 00 00 00 05 00 00 00 01 00 00 00 00");
    EXPECT_EQ(data(*output), kDown);
}

} // namespace
