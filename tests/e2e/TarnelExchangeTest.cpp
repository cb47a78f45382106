#include <memory>
#include <string>

#include "e2e/EndToEndTest.h"

namespace {

class TarnelExchangeTest : public EndToEndTest {
protected:
    TarnelExchangeTest() { startSimulator(); }

    Bytes define(TestClient& client, const std::vector<InputRecord>& inputs,
                 const std::vector<OutputRecord>& outputs) {
        return client.Exchange(*simulator, tarnelRequest(definitionsMessage(inputs, outputs)));
    }

    Bytes send(TestClient& client, std::uint32_t action, std::int32_t value) {
        return client.Exchange(*simulator, tarnelRequest(dataMessage({{action, value}})));
    }

    // The answer has the values before the request; only the next one shows its effect.
    Bytes poll(TestClient& client) {
        return client.Exchange(*simulator, tarnelRequest(dataMessage({})));
    }
};

TEST_F(TarnelExchangeTest, ShakesHandsByteByByte) {
    TestClient client;
    client.Send(fromHex("11 22 33 44 B1 6B 00 B5"));
    EXPECT_EQ(toHex(client.AnswerFrame(*simulator)),
              "0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00");
}

TEST_F(TarnelExchangeTest, AnswersABareIdentificationWithTheAircraft) {
    TestClient client;
    client.Send(kTarnel);
    EXPECT_EQ(toHex(client.AnswerFrame(*simulator)),
              "0C 00 00 00 FF FF 00 00 04 00 00 00 B1 2E 85 B9");
}

const std::vector<InputRecord> kInputs{
    {.action = 1, .targetType = RecordType::Int, .target = "test/int"},
    {.action = 2,
     .targetType = RecordType::Float,
     .scaling = RecordScaling::FloatRange,
     .floatMinimum = -1.0F,
     .floatMaximum = 1.0F,
     .target = "test/float"},
    {.action = 3, .targetIndex = 2, .targetType = RecordType::IntArray, .target = "test/ints"}};

const std::vector<OutputRecord> kOutputs{
    {.id = 10, .name = "test/int", .type = RecordType::Int},
    {.id = 11, .name = "test/float", .type = RecordType::Float},
    {.id = 12, .name = "test/ints", .type = RecordType::IntArray, .first = 1, .count = 3},
    {.id = 13, .name = "no/such", .type = RecordType::FloatArray, .count = 1},
    {.id = 14, .name = "test/int", .type = 5}};

TEST_F(TarnelExchangeTest, DrivesInputsAndReportsOutputsByteByByte) {
    TestClient client;
    const Bytes defined = define(client, kInputs, kOutputs);
    EXPECT_EQ(toHex(defined),
              "0A 00 00 00 04 00 00 00 00 00 00 00 "
              "0B 00 00 00 04 00 00 00 00 00 00 00 "
              "0C 00 00 00 0C 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "0D 00 00 00 04 00 00 00 00 00 00 00 "
              "0E 00 00 00 "
              "FF FF 00 00 04 00 00 00 B1 2E 85 B9");

    // 11 22 33 44, DATA, items of 8 bytes, three of them: 1 = 258, 2 = 65535, 3 = -2.
    client.Send(
        fromHex("11 22 33 44 DE AD BE EF 08 00 00 00 03 00 00 00 "
                "01 00 00 00 02 01 00 00 "
                "02 00 00 00 FF FF 00 00 "
                "03 00 00 00 FE FF FF FF"));
    // The outputs go first: this answer still has the values before the message.
    EXPECT_EQ(client.Answer(*simulator), defined);
    EXPECT_EQ(simulator->Get("test/int"), "258");
    EXPECT_EQ(simulator->Get("test/float"), "1");
    EXPECT_EQ(simulator->Get("test/ints"), "0,0,-2,0,0,0,0,0");

    client.Send(fromHex("11 22 33 44 DE AD BE EF 08 00 00 00 00 00 00 00"));
    EXPECT_EQ(toHex(client.AnswerFrame(*simulator)),
              "48 00 00 00 "
              "0A 00 00 00 04 00 00 00 02 01 00 00 "
              "0B 00 00 00 04 00 00 00 00 00 80 3F "
              "0C 00 00 00 0C 00 00 00 00 00 00 00 FE FF FF FF 00 00 00 00 "
              "0D 00 00 00 04 00 00 00 00 00 00 00 "
              "0E 00 00 00 "
              "FF FF 00 00 04 00 00 00 B1 2E 85 B9");
}

TEST_F(TarnelExchangeTest, ScalesAnAxisInEveryMode) {
    simulator->Ask("set test/minimum 5");
    simulator->Ask("set test/maximum 5");
    TestClient client;
    const auto axis = [](std::int32_t action, std::int32_t scaling, std::int32_t element) {
        return InputRecord{.action = action,
                           .targetIndex = element,
                           .intMinimum = -100,
                           .intMaximum = 100,
                           .targetType = RecordType::FloatArray,
                           .scaling = scaling,
                           .rangeType = RecordType::Float,
                           .floatMinimum = -2.0F,
                           .floatMaximum = 2.0F,
                           .rangeMinimumName = "test/minimum",
                           .rangeMaximumName = "test/maximum",
                           .target = "test/floats"};
    };
    define(client,
           {axis(1, RecordScaling::IntRange, 0), axis(1, RecordScaling::FloatRange, 1),
            axis(1, RecordScaling::DatarefRange, 2), axis(1, 0, 3)},
           {});
    send(client, 1, 65535);
    EXPECT_EQ(simulator->Get("test/floats"), "100,2,5,1,0,0,0,0");
    send(client, 1, 0);
    EXPECT_EQ(simulator->Get("test/floats"), "-100,-2,-5,0,0,0,0,0");
}

TEST_F(TarnelExchangeTest, RunsAndHoldsCommands) {
    TestClient client;
    define(client,
           {{.action = 1, .targetType = RecordType::Command, .target = "test/once"},
            {.action = 2, .targetType = RecordType::Command, .hold = 1, .target = "test/hold"}},
           {});
    send(client, 1, 1);
    send(client, 2, 1);
    send(client, 2, 1);
    EXPECT_NE(simulator->Ask("events test/once").find("begin=1"), std::string::npos);
    EXPECT_NE(simulator->Ask("events test/hold").find("end=0"), std::string::npos);
    send(client, 2, 0);
    send(client, 2, 0);
    EXPECT_NE(simulator->Ask("events test/hold").find("begin=1"), std::string::npos);
    EXPECT_NE(simulator->Ask("events test/hold").find("end=1"), std::string::npos);
}

TEST_F(TarnelExchangeTest, SharesAKyrDatarefBetweenClientsAndTheSimulator) {
    TestClient owner;
    const InputRecord input{.action = 1,
                            .targetType = RecordType::Float,
                            .scaling = RecordScaling::FloatRange,
                            .floatMinimum = 0.0F,
                            .floatMaximum = 8.0F,
                            .target = "kyr/test_value"};
    // The outputs of a message are made after its inputs, so a second one finds the dataref.
    define(owner, {}, {{.id = 1, .name = "kyr/test_value", .type = RecordType::Float}});
    define(owner, {input}, {{.id = 1, .name = "kyr/test_value", .type = RecordType::Float}});
    send(owner, 1, 65535);
    EXPECT_EQ(simulator->Get("kyr/test_value"), "8");

    simulator->Ask("set kyr/test_value 0.5");
    TestClient reader;
    EXPECT_EQ(define(reader, {}, {{.id = 9, .name = "kyr/test_value", .type = RecordType::Float}}),
              join({fromHex("09 00 00 00 04 00 00 00 00 00 00 3F"), trailer(kAircraftOne)}));
}

TEST_F(TarnelExchangeTest, ReportsACommandOfTheSimulatorsUser) {
    TestClient client;
    const auto state = [](const char* byte) {
        return join({fromHex("05 00 00 00 01 00 00 00"), fromHex(byte), trailer(kAircraftOne)});
    };
    EXPECT_EQ(
        define(client, {}, {{.id = 5, .name = "kyr/test_command", .type = RecordType::Command}}),
        state("00"));

    simulator->Ask("command begin kyr/test_command");
    EXPECT_EQ(poll(client), state("01"));
    EXPECT_EQ(poll(client), state("01"));
    simulator->Ask("command end kyr/test_command");
    EXPECT_EQ(poll(client), state("00"));

    // Pressed and released between two reports: reported once.
    simulator->Ask("command once kyr/test_command");
    EXPECT_EQ(poll(client), state("01"));
    EXPECT_EQ(poll(client), state("00"));
}

TEST_F(TarnelExchangeTest, ReportsAnotherAircraftAndNoneAtAll) {
    TestClient client;
    const std::vector<OutputRecord> outputs{
        {.id = 1, .name = "test/int", .type = RecordType::Int},
        {.id = 2, .name = "kyr/test_command", .type = RecordType::Command}};
    simulator->Ask("set test/int 7");
    EXPECT_EQ(define(client, {}, outputs), join({fromHex("01 00 00 00 04 00 00 00 07 00 00 00 "
                                                         "02 00 00 00 01 00 00 00 00"),
                                                 trailer(kAircraftOne)}));
    loadAircraft("Test aircraft two");
    EXPECT_EQ(poll(client), join({fromHex("01 00 00 00 04 00 00 00 07 00 00 00 "
                                          "02 00 00 00 01 00 00 00 00"),
                                  trailer(kAircraftTwo)}));
    simulator->Ask("aircraft unload");
    // Zeros, the command's identifier twice, and no aircraft.
    EXPECT_EQ(poll(client), join({fromHex("01 00 00 00 04 00 00 00 00 00 00 00 "
                                          "02 00 00 00 02 00 00 00 01 00 00 00 00"),
                                  trailer("00 00 00 00")}));
}

TEST_F(TarnelExchangeTest, GivesACommandOutsideOfKyrItsIdentifierOnceAndNoValue) {
    TestClient client;
    const std::vector<OutputRecord> outputs{
        {.id = 6, .name = "test/once", .type = RecordType::Command},
        {.id = 7, .name = "kyr/test_command", .type = RecordType::Command}};
    EXPECT_EQ(toHex(define(client, {}, outputs)),
              "06 00 00 00 "
              "07 00 00 00 01 00 00 00 00 "
              "FF FF 00 00 04 00 00 00 B1 2E 85 B9");
    simulator->Ask("command begin test/once");
    simulator->Ask("aircraft unload");
    EXPECT_EQ(toHex(poll(client)),
              "06 00 00 00 "
              "07 00 00 00 07 00 00 00 01 00 00 00 00 "
              "FF FF 00 00 04 00 00 00 00 00 00 00");
}

TEST_F(TarnelExchangeTest, KeepsTwoClientsApart) {
    TestClient first;
    TestClient second;
    define(first, {{.action = 1, .targetType = RecordType::Int, .target = "test/int"}},
           {{.id = 1, .name = "test/int", .type = RecordType::Int}});
    EXPECT_EQ(poll(second), trailer(kAircraftOne));

    define(second,
           {{.action = 1,
             .intMaximum = 65535,
             .targetType = RecordType::Float,
             .scaling = RecordScaling::IntRange,
             .target = "test/float"}},
           {{.id = 1, .name = "test/float", .type = RecordType::Float}});
    first.Send(tarnelRequest(dataMessage({{1, 3}})));
    second.Send(tarnelRequest(dataMessage({{1, 4}})));
    first.Answer(*simulator);
    second.Answer(*simulator);
    EXPECT_EQ(poll(first),
              join({fromHex("01 00 00 00 04 00 00 00 03 00 00 00"), trailer(kAircraftOne)}));
    EXPECT_EQ(poll(second),
              join({fromHex("01 00 00 00 04 00 00 00 00 00 80 40"), trailer(kAircraftOne)}));
}

TEST_F(TarnelExchangeTest, ReplacesAllDefinitionsByTheNextMessage) {
    TestClient client;
    define(client, {{.action = 1, .targetType = RecordType::Int, .target = "test/int"}},
           {{.id = 1, .name = "test/int", .type = RecordType::Int}});
    EXPECT_EQ(define(client, {}, {}), trailer(kAircraftOne));
    send(client, 1, 5);
    EXPECT_EQ(simulator->Get("test/int"), "0");
    EXPECT_EQ(simulator->LastLogMessage(),
              "WARNING@TarnelProtocol::tryParseData : unknown action id(1)");
}

} // namespace
