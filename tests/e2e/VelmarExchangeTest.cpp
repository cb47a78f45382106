#include <memory>
#include <string>

#include "e2e/EndToEndTest.h"
#include "support/VelmarMessages.h"

namespace {

class VelmarExchangeTest : public EndToEndTest {
protected:
    VelmarExchangeTest() { startSimulator(); }

    // The request for these packets, and its answer in hex.
    std::string exchange(TestClient& client, const Bytes& packets) {
        client.Send(velmarRequest({packets}));
        return toHex(client.Answer(*simulator));
    }

    void expectEvents(const std::string& command, const std::string& counts) {
        EXPECT_NE(simulator->Ask("events " + command).find(counts), std::string::npos)
            << simulator->Ask("events " + command);
    }
};

TEST_F(VelmarExchangeTest, AnswersEachOfTheEightPacketTypes) {
    TestClient client;
    EXPECT_EQ(exchange(client, registerDataref(7, VelmarValueType::Float, 1, "test/float")),
              "01 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(exchange(client, registerCommand(9, "test/once")),
              "03 00 00 00 09 00 00 00 01 00 00 00");
    EXPECT_EQ(exchange(client, writeDataref(7, f32(1.0F))), "06 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(exchange(client, readDataref(7)),
              "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F");
    EXPECT_EQ(exchange(client, runCommand(9, VelmarAction::Once)), "");
    EXPECT_EQ(exchange(client, pollCommandStates()), "01 00 00 00 09 00 00 00 02");
    EXPECT_EQ(exchange(client, unregisterCommand(9)), "04 00 00 00 09 00 00 00 01 00 00 00");
    EXPECT_EQ(exchange(client, unregisterDataref(7)), "02 00 00 00 07 00 00 00 01 00 00 00");
    expectEvents("test/once", "begin=1");
}

TEST_F(VelmarExchangeTest, RefusesWhatTheSimulatorDoesNotKnow) {
    TestClient client;
    EXPECT_EQ(exchange(client, registerDataref(1, VelmarValueType::Int, 1, "no/such/dataref")),
              "01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00");
    EXPECT_EQ(exchange(client, registerCommand(1, "no/such/command")),
              "03 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00");
    EXPECT_EQ(exchange(client, readDataref(1)), "05 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00");
    EXPECT_EQ(exchange(client, unregisterCommand(1)),
              "04 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00");
}

TEST_F(VelmarExchangeTest, AnswersSeveralPacketsOfOneRequestInOneFrame) {
    TestClient client;
    client.Send(velmarRequest({registerDataref(1, VelmarValueType::Int, 1, "test/int"),
                               writeDataref(1, u32(42)), readDataref(1), pollCommandStates()}));
    EXPECT_EQ(toHex(client.AnswerFrame(*simulator)),
              "30 00 00 00 "
              "01 00 00 00 01 00 00 00 01 00 00 00 "
              "06 00 00 00 01 00 00 00 01 00 00 00 "
              "05 00 00 00 01 00 00 00 01 00 00 00 "
              "04 00 00 00 2A 00 00 00 "
              "00 00 00 00");
}

TEST_F(VelmarExchangeTest, SwitchesBetweenTheProtocolsMessageByMessage) {
    TestClient client;
    exchange(client, registerDataref(1, VelmarValueType::Int, 1, "test/int"));
    EXPECT_EQ(client.Exchange(*simulator,
                              tarnelRequest(definitionsMessage(
                                  {}, {{.id = 1, .name = "test/int", .type = RecordType::Int}}))),
              join({fromHex("01 00 00 00 04 00 00 00 00 00 00 00"), trailer(kAircraftOne)}));
    EXPECT_EQ(exchange(client, writeDataref(1, u32(5))), "06 00 00 00 01 00 00 00 01 00 00 00");
    // Each protocol still has its definitions.
    EXPECT_EQ(client.Exchange(*simulator, tarnelRequest(dataMessage({}))),
              join({fromHex("01 00 00 00 04 00 00 00 05 00 00 00"), trailer(kAircraftOne)}));
    EXPECT_EQ(exchange(client, readDataref(1)),
              "05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 05 00 00 00");
}

TEST_F(VelmarExchangeTest, KeepsTheNumbersOfTwoClientsApart) {
    TestClient first;
    TestClient second;
    exchange(first, registerDataref(1, VelmarValueType::Int, 1, "test/int"));
    EXPECT_EQ(exchange(second, readDataref(1)), "05 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00");
    exchange(second, registerDataref(1, VelmarValueType::Float, 1, "test/float"));
    exchange(first, writeDataref(1, u32(3)));
    exchange(second, writeDataref(1, f32(2.0F)));
    EXPECT_EQ(simulator->Get("test/int"), "3");
    EXPECT_EQ(simulator->Get("test/float"), "2");
}

TEST_F(VelmarExchangeTest, ReportsACommandPressedBetweenTwoPolls) {
    TestClient client;
    exchange(client, registerCommand(4, "test/hold"));
    EXPECT_EQ(exchange(client, pollCommandStates()), "00 00 00 00");
    simulator->Ask("command begin test/hold");
    EXPECT_EQ(exchange(client, pollCommandStates()), "01 00 00 00 04 00 00 00 01");
    simulator->Ask("command end test/hold");
    EXPECT_EQ(exchange(client, pollCommandStates()), "01 00 00 00 04 00 00 00 02");
    // Polling resets nothing.
    EXPECT_EQ(exchange(client, pollCommandStates()), "01 00 00 00 04 00 00 00 02");
}

TEST_F(VelmarExchangeTest, BeginsAndEndsACommand) {
    TestClient client;
    exchange(client, registerCommand(4, "test/hold"));
    exchange(client, runCommand(4, VelmarAction::Begin));
    expectEvents("test/hold", "end=0");
    exchange(client, runCommand(4, VelmarAction::End));
    expectEvents("test/hold", "end=1");
}

TEST_F(VelmarExchangeTest, WritesWholeArraysOfTheSimulator) {
    TestClient client;
    exchange(client, registerDataref(1, VelmarValueType::IntArray, 8, "test/ints"));
    exchange(client, registerDataref(2, VelmarValueType::FloatArray, 2, "test/floats"));
    EXPECT_EQ(exchange(client, writeDataref(1, join({u32(1), u32(2), u32(3), u32(4), u32(5), u32(6),
                                                     u32(7), u32(8)}))),
              "06 00 00 00 01 00 00 00 01 00 00 00");
    exchange(client, writeDataref(2, join({f32(0.5F), f32(1.5F)})));
    EXPECT_EQ(simulator->Get("test/ints"), "1,2,3,4,5,6,7,8");
    EXPECT_EQ(simulator->Get("test/floats"), "0.5,1.5,0,0,0,0,0,0");
    EXPECT_EQ(exchange(client, readDataref(2)),
              "05 00 00 00 02 00 00 00 01 00 00 00 08 00 00 00 00 00 00 3F 00 00 C0 3F");
}

TEST_F(VelmarExchangeTest, NeverWritesTheLastElementOfThePluginsOwnArrays) {
    const char* const own = "kyr/external_forcescalefactor_value";
    TestClient client;
    exchange(client, registerDataref(1, VelmarValueType::IntArray, 4, own));
    EXPECT_EQ(exchange(client, writeDataref(1, join({u32(1), u32(2), u32(3), u32(4)}))),
              "06 00 00 00 01 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator->Get(own), "0,0,0,0");
    exchange(client, registerDataref(2, VelmarValueType::IntArray, 3, own));
    exchange(client, writeDataref(2, join({u32(1), u32(2), u32(3)})));
    EXPECT_EQ(simulator->Get(own), "1,2,3,0");
}

TEST_F(VelmarExchangeTest, CarriesAnIntAsOneByte) {
    TestClient client;
    exchange(client, registerDataref(1, VelmarValueType::Byte, 1, "test/int"));
    exchange(client, writeDataref(1, {0xFF}));
    EXPECT_EQ(simulator->Get("test/int"), "255");
    simulator->Ask("set test/int 258");
    EXPECT_EQ(exchange(client, readDataref(1)),
              "05 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 02");
}

TEST_F(VelmarExchangeTest, DoesNotCallAClientThatVanishedWithCommandsRegistered) {
    {
        TestClient client;
        exchange(client, registerCommand(1, "test/once"));
        client.CloseWithReset();
    }
    simulator->Step(5);
    EXPECT_TRUE(simulator->Ask("command once test/once").starts_with("ok"));
    expectEvents("test/once", " begin=1");
    simulator->Step();
}

TEST_F(VelmarExchangeTest, DoesNotCallAClientThatReusedACommandsNumber) {
    {
        TestClient client;
        exchange(client, registerCommand(1, "test/once"));
        exchange(client, registerCommand(1, "test/hold"));
        // Still observed under its old number.
        simulator->Ask("command once test/once");
        EXPECT_EQ(exchange(client, pollCommandStates()), "01 00 00 00 01 00 00 00 02");
    }
    simulator->Step(5);
    EXPECT_TRUE(simulator->Ask("command once test/once").starts_with("ok"));
    EXPECT_TRUE(simulator->Ask("command once test/hold").starts_with("ok"));
    simulator->Step();
}

} // namespace
