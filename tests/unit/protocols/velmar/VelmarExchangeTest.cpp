#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "WiredCommandObserver.h"
#include "common/SimStateInformation.h"
#include "headless/xplm/Simulator.h"
#include "network/TcpConnection.h"
#include "protocols/ProtocolFactory.h"
#include "support/Bytes.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"

namespace {

constexpr const char* kEmptyAnswer = "00 00 00 00";

// A client and its connection. The exchanges of docs/velmar.md are replayed by the tests of real
// flights (tests/e2e/DocumentedExchangeTest.cpp).
class VelmarExchangeTest : public testing::Test {
protected:
    VelmarExchangeTest() {
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends.data()) != 0) {
            throw std::runtime_error("socketpair");
        }
        connection = std::make_unique<TcpConnection>(ends[0], &logger, &utilities, &factory);
        simulator.Commands().Define("sim/lights/beacon_lights_on", "Beacon on");
    }

    ~VelmarExchangeTest() override { ::close(ends[1]); }

    // What the client receives after two ticks, in hex.
    std::string send(const char* hex) {
        const Bytes bytes = fromHex(hex);
        const ssize_t sent = ::send(ends[1], bytes.data(), bytes.size(), 0);
        EXPECT_EQ(sent, static_cast<ssize_t>(bytes.size()));
        connection->ProcessEvents();
        connection->ProcessEvents();
        std::array<unsigned char, 1024> answer{};
        const ssize_t received = ::recv(ends[1], answer.data(), answer.size(), 0);
        return received < 1 ? "" : toHex({answer.begin(), answer.begin() + received});
    }

    void registerCommand() {
        send(
            "55 66 77 88"
            "03 00 00 00  09 00 00 00  1B"
            "73 69 6D 2F 6C 69 67 68 74 73 2F 62 65 61 63 6F 6E 5F 6C 69 67 68 74 73 5F 6F 6E");
    }

    headless::Simulator simulator;
    RecordingLogger logger;
    FakeUtilities utilities;
    SimStateInformation simState;
    WiredCommandObserver observer;
    ProtocolFactory factory{&simState, observer.Get(), &logger, &utilities, nullptr};
    std::array<int, 2> ends{};
    std::unique_ptr<TcpConnection> connection;
};

TEST_F(VelmarExchangeTest, WaitsForTheRestOfATornIdentification) {
    EXPECT_EQ(send("55 66 77"), "");
    EXPECT_EQ(send("88 08 00 00 00"), "04 00 00 00 00 00 00 00");
}

TEST_F(VelmarExchangeTest, AnswersAnIdentificationThatArrivesAloneWithAnEmptyFrame) {
    EXPECT_EQ(send("55 66 77 88"), kEmptyAnswer);
    // Where an identification is due, so the packet is dropped.
    EXPECT_EQ(send("08 00 00 00"), "");
    EXPECT_EQ(send("55 66 77 88 08 00 00 00"), "04 00 00 00 00 00 00 00");
}

TEST_F(VelmarExchangeTest, NeverFindsAnIdentificationAfterTwoLeftBytes) {
    EXPECT_EQ(send("55 66 77 88  08 00 00 00  08 00"), "04 00 00 00 00 00 00 00");
    // 08 00 55 66, 77 88 08 00, 00 00 55 66, 77 88 08 00 and so on.
    for (int request = 0; request < 4; ++request) {
        EXPECT_EQ(send("55 66 77 88  08 00 00 00"), "");
    }
}

TEST_F(VelmarExchangeTest, AnswersTwoRequestsThatArriveTogetherInOneFrame) {
    EXPECT_EQ(send("55 66 77 88  08 00 00 00  55 66 77 88  05 00 00 00  09 00 00 00"),
              "14 00 00 00 00 00 00 00 "
              "05 00 00 00 09 00 00 00 02 00 00 00 01 00 00 00");
}

TEST_F(VelmarExchangeTest, ShowsTheStatesOfAHeldCommandPollByPoll) {
    registerCommand();
    headless::CommandTable& commands = simulator.Commands();
    const auto beacon = commands.Lookup("sim/lights/beacon_lights_on");
    const auto poll = [&] { return send("55 66 77 88  08 00 00 00"); };
    EXPECT_EQ(poll(), "04 00 00 00 00 00 00 00");
    commands.Begin(beacon);
    EXPECT_EQ(poll(), "09 00 00 00 01 00 00 00 09 00 00 00 01");
    simulator.RunFrame(0.02);
    EXPECT_EQ(poll(), "09 00 00 00 01 00 00 00 09 00 00 00 01");
    commands.End(beacon);
    EXPECT_EQ(poll(), "09 00 00 00 01 00 00 00 09 00 00 00 02");
    EXPECT_EQ(poll(), "09 00 00 00 01 00 00 00 09 00 00 00 02");
    commands.Once(beacon);
    EXPECT_EQ(poll(), "09 00 00 00 01 00 00 00 09 00 00 00 02");
}

} // namespace
