#include <optional>
#include <string>

#include "e2e/EndToEndTest.h"
#include "support/WireVectors.h"

namespace {

// The plugin does what tests/vectors says, byte by byte, in a new simulator for each vector.
class VectorsTest : public EndToEndTest, public testing::WithParamInterface<WireVector> {
protected:
    VectorsTest() {
        startSimulator();
        client.emplace();
    }

    void play(const WireStep& step) {
        if (step.Is("request")) {
            client->Send(step.bytes);
        } else if (step.Is("answer")) {
            expectAnswer(step);
        } else if (step.Is("reads") || step.Is("phases") || step.Is("log")) {
            expectState(step);
        } else {
            const bool isCommand = step.Is("press") || step.Is("begin") || step.Is("end");
            const std::string keyword = step.Is("press") ? "once" : step.keyword;
            const std::string statement = (isCommand ? "command " : "") + keyword + " " + step.text;
            EXPECT_EQ(simulator->Ask(statement), "ok");
        }
    }

private:
    void expectAnswer(const WireStep& step) {
        constexpr const char* kEnds = "ends ";
        if (step.Is("answer", kEnds)) {
            simulator->Send("step 10");
            simulator->WaitForEnd();
            EXPECT_EQ(kEnds + simulator->LastLogMessage(), step.text);
        } else if (step.text == "closed") {
            EXPECT_TRUE(client->IsClosedByServer(*simulator));
        } else if (step.text == "none") {
            ASSERT_TRUE(client->IsDelivered());
            simulator->Step(3);
            EXPECT_EQ(toHex(client->Received()), "");
        } else {
            EXPECT_EQ(toHex(client->AnswerFrame(*simulator)), toHex(step.bytes));
        }
    }

    void expectState(const WireStep& step) {
        const WireWords words = wordsOf(step.text);
        if (step.Is("log")) {
            EXPECT_EQ(simulator->LastLogMessage(), step.text);
        } else if (step.Is("reads")) {
            EXPECT_EQ(simulator->Get(words.at(0)), words.at(1));
        } else {
            const std::string events = simulator->Ask("events " + words.at(0));
            EXPECT_TRUE(events.starts_with(words.at(0) + " begin=" + words.at(1) + " ")) << events;
            EXPECT_NE(events.find(" end=" + words.at(2) + " "), std::string::npos) << events;
        }
    }

    std::optional<TestClient> client;
};

TEST_P(VectorsTest, IsWhatThePluginDoes) {
    for (const WireStep& step : GetParam().steps) {
        SCOPED_TRACE(step.place);
        ASSERT_NO_FATAL_FAILURE(play(step));
    }
}

INSTANTIATE_TEST_SUITE_P(Wire, VectorsTest, testing::ValuesIn(readWireVectors()),
                         [](const auto& test) { return testNameOf(test.param); });

} // namespace
