// The real entry points in a process whose global locale another plugin has set.

#include <csignal>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "XPLMDefs.h"
#include "headless/xplm/Simulator.h"
#include "support/Bytes.h"
#include "support/Deadline.h"
#include "support/GroupedDigits.h"
#include "support/TarnelMessages.h"
#include "support/TcpPeer.h"
#include "support/TemporaryDirectory.h"

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription);
PLUGIN_API void XPluginStop();

namespace {

using testing::Contains;
using testing::Each;
using testing::EndsWith;
using testing::MatchesRegex;

constexpr const char* kLocalConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

class ForeignLocaleTest : public testing::Test {
protected:
    ForeignLocaleTest()
        : former(std::locale::global(std::locale(std::locale(), new GroupedDigits))) {
        directory.MakePluginsFolder();
        directory.Write("XPLANEORVANE_VERBOSE", "");
        directory.Write(kLocalConfigFile, "kyr/lamps int_array 2000\n");
        char name[256] = {};
        char signature[256] = {};
        char description[256] = {};
        EXPECT_EQ(XPluginStart(name, signature, description), 1);
    }
    ~ForeignLocaleTest() override {
        XPluginStop();
        std::locale::global(former);
    }

    // Runs frames until an answer begins to arrive.
    void exchange(TcpPeer& client, const Bytes& message) {
        client.Send(tarnelRequest(message));
        EXPECT_TRUE(driveUntil([&] { simulator.RunFrame(0.02); },
                               [&] { return !client.Receive().empty(); }));
    }

    static Bytes twelveOutputs() {
        std::vector<OutputRecord> outputs(12);
        outputs[0] = {.id = 1, .name = "kyr/wide", .type = RecordType::IntArray, .count = 1500};
        return definitionsMessage({}, outputs);
    }

    void expectLogged(const std::string& message) {
        EXPECT_THAT(simulator.Log().Lines(), Contains(EndsWith(" " + message)));
    }

    std::locale former;
    TemporaryDirectory directory;
    headless::Simulator simulator;
};

TEST_F(ForeignLocaleTest, WouldGroupTheDigitsOfAStream) {
    std::ostringstream text;
    text << 1500;
    EXPECT_EQ(text.str(), "1.5.0.0");
}

TEST_F(ForeignLocaleTest, LeavesTheTimesOfTheLogAsTheyAre) {
    TcpPeer client(kPluginPort);
    exchange(client, versionMessage());
    EXPECT_THAT(simulator.Log().Lines(),
                Each(MatchesRegex("XPlaneOrvane [0-9]{4}-[0-9]{1,2}-[0-9]{1,2} "
                                  "[0-9]{1,2}:[0-9]{1,2}:[0-9]{1,2} .*")));
}

TEST_F(ForeignLocaleTest, LeavesTheCountsOfADefinitionsMessageAsTheyAre) {
    TcpPeer client(kPluginPort);
    exchange(client, twelveOutputs());
    EXPECT_THAT(simulator.Log().Lines(),
                Contains(MatchesRegex(".* Verbose@TcpConnection::ProcessEvents : recv\\(\\) "
                                      "received num bytes 1416  readposptr [0-9]{6,}")));
    EXPECT_THAT(simulator.Log().Lines(),
                Contains(MatchesRegex(".* Verbose@TarnelProtocol::tryParseConfig : recv\\(\\) "
                                      "readposptr [0-9]{6,}")));
    expectLogged(
        "Verbose@TarnelProtocol::tryParseConfig  defHeader.inputStructCount(0) "
        "defHeader.outputStructCount(12)");
    expectLogged("VERBOSE@TarnelProtocol::tryParseConfig : outputInfos.size(12)");
}

TEST_F(ForeignLocaleTest, LeavesTheNumbersOfAnUnknownMessageAsTheyAre) {
    TcpPeer client(kPluginPort);
    exchange(client, join({fromHex("01 02 03 04"), zeros(16)}));
    expectLogged(
        "Verbose@TarnelProtocol::tryParseConfig defHeader.specifier(67305985) != "
        "CMD_DEFINITIONS(3723427776)");
    expectLogged(
        "Verbose@TarnelProtocol::tryParseData dataHeader.specifier(67305985) != "
        "CMD_DATA(4022250974)");
}

TEST_F(ForeignLocaleTest, LeavesTheNumbersOfShortMessagesAsTheyAre) {
    TcpPeer empty(kPluginPort);
    exchange(empty, {});
    expectLogged(
        "Verbose@TarnelProtocol::tryParseConfig numBytes(0) < sizeof(DefinitionHeaderStruct)(20)");
    expectLogged("Verbose@TarnelProtocol::tryParseData numBytes(0) < sizeof(DataHeaderStruct)(12)");

    TcpPeer torn(kPluginPort);
    exchange(torn, fromHex("DE AD BE EF 08 00 00 00 E8 03 00 00"));
    expectLogged("WARNING@TarnelProtocol::tryParseData : numBytes (12) < packetSize(8012)");

    TcpPeer tornDefinitions(kPluginPort);
    exchange(tornDefinitions,
             fromHex("C0 FF EE DD E8 01 00 00 03 00 00 00 74 00 00 00 00 00 00 00"));
    expectLogged("Error@TarnelProtocol::tryParseConfig : numBytes (20) < packetSize(1484)");
}

TEST_F(ForeignLocaleTest, LeavesAnUnknownActionAsItIs) {
    TcpPeer client(kPluginPort);
    exchange(client, dataMessage({{1'234'567, 0}}));
    expectLogged("WARNING@TarnelProtocol::tryParseData : unknown action id(1234567)");
}

TEST_F(ForeignLocaleTest, LeavesTheNumberOfASocketErrorAsItIs) {
    TcpPeer client(kPluginPort);
    exchange(client, versionMessage());
    client.CloseWithReset();
    const std::string line =
        "Warning@TcpConnection::ProcessEvents : recv() : Unknown Socket Error Code 104";
    EXPECT_TRUE(driveUntil([&] { simulator.RunFrame(0.02); },
                           [&] { return simulator.Log().Text().ends_with(line + "\n"); }));
}

TEST_F(ForeignLocaleTest, LeavesTheCountOfATornVelmarNameAsItIs) {
    TcpPeer client(kPluginPort);
    // 'A', 0x41, is the length of the name; only 12 bytes follow.
    client.Send(join({fromHex("55 66 77 88 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00 41"),
                      name("sim/aircraft", 12)}));
    EXPECT_EXIT(
        {
            simulator.Log().EchoToStderr(true);
            driveUntil([&] { simulator.RunFrame(0.02); }, [] { return false; });
        },
        testing::KilledBySignal(SIGABRT),
        "FATAL@XPlaneDataRef::FromStream : tried to read string with A bytes, got 12\n$");
}

TEST_F(ForeignLocaleTest, ReadsAndWritesTheSizesOfTheConfigurationFile) {
    EXPECT_EQ(simulator.Datarefs().GetIntArray("kyr/lamps").size(), 2000U);
    TcpPeer client(kPluginPort);
    exchange(client, twelveOutputs());
    EXPECT_TRUE(directory.Read(kLocalConfigFile).ends_with("\nkyr/wide int_array 1500"))
        << directory.Read(kLocalConfigFile);
}

} // namespace
