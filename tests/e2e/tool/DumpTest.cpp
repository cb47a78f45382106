#include <algorithm>
#include <regex>

#include "e2e/EndToEndTest.h"
#include "e2e/dissector/LoopbackCapture.h"
#include "e2e/ToolRun.h"
#include "support/VelmarMessages.h"

namespace {

constexpr const char* kCapture = "flight.pcap";

ToolSetting withCapture(const std::string& input) {
    ToolSetting setting;
    setting.input = input;
    return setting;
}

// Without times and clients, which are different in every run.
std::string comparable(const std::string& lines) {
    const std::regex head("(^|\n) *[0-9]+\\.[0-9]{6} 127\\.0\\.0\\.1:[0-9]+ ");
    const std::regex response(" \\([0-9]+\\.[0-9]{3} ms\\)");
    return std::regex_replace(std::regex_replace(lines, head, "$1"), response, " (T)");
}

class DumpTest : public EndToEndTest {
protected:
    Bytes velmar(const Bytes& packets) { return join({fromHex("55 66 77 88"), packets}); }

    // Both protocols on one connection.
    void fly() {
        startSimulator();
        LoopbackCapture capture(kCapture);
        {
            TestClient client;
            client.Exchange(*simulator, tarnel(versionMessage()));
            client.Exchange(
                *simulator,
                tarnel(definitionsMessage(
                    {{.action = 7, .targetType = 1, .target = "test/int"}},
                    {{.id = 1, .name = "test/int", .type = 1},
                     {.id = 2, .name = "kyr/button", .type = 6},
                     {.id = 3, .name = "test/ints", .type = 3, .first = 1, .count = 2}})));
            client.Exchange(*simulator, tarnel(dataMessage({{7, 42}})));
            simulator->Ask("aircraft unload");
            client.Exchange(*simulator, tarnel({}));
            client.Exchange(*simulator, velmar(join({registerDataref(1, 1, 0, "test/int"),
                                                     registerCommand(2, "test/once"),
                                                     registerDataref(3, 2, 0, "test/absent")})));
            client.Exchange(
                *simulator,
                velmar(join({writeDataref(1, i32(-3)), readDataref(1), runCommand(2, 1)})));
            client.Exchange(*simulator, velmar(pollCommandStates()));
            client.HalfClose();
            client.IsClosedByServer(*simulator);
        }
        capture.Finish();
    }
};

constexpr const char* kFlight =
    "> tcp connection: opened\n"
    "> tarnel version\n"
    "< tarnel version (T): 1.0.7.10, 6\n"
    "> tarnel definitions: 1 inputs, 3 outputs; input 7 test/int int; output 1 test/int int; "
    "output 2 kyr/button command; output 3 test/ints int[2] from 1\n"
    "< tarnel outputs (T): test/int = 0, kyr/button = 0, test/ints = [0, 0], aircraft 0xB9852EB1\n"
    "> tarnel data: 1 items; 7 test/int = 42\n"
    "< tarnel outputs (T): test/int = 0, kyr/button = 0, test/ints = [0, 0], aircraft 0xB9852EB1\n"
    "> tarnel query: for the outputs\n"
    "< tarnel outputs (T): test/int = 0, kyr/button = 0, test/ints = [0, 0], no aircraft\n"
    "> velmar register dataref: 1 test/int int\n"
    "> velmar register command: 2 test/once\n"
    "> velmar register dataref: 3 test/absent float\n"
    "< velmar register dataref (T): 1 test/int: success\n"
    "< velmar register command: 2 test/once: success\n"
    "< velmar register dataref: 3 test/absent: no such dataref\n"
    "> velmar write dataref: 1 test/int = -3\n"
    "> velmar read dataref: 1 test/int\n"
    "> velmar run command: 2 test/once: once\n"
    "< velmar write dataref (T): 1 test/int: success\n"
    "< velmar read dataref: 1 test/int = -3\n"
    "> velmar poll command states\n"
    "< velmar poll command states (T): 2 test/once: pressed and released\n"
    "> tcp connection: closed\n"
    "< tcp connection: closed\n";

} // namespace

TEST_F(DumpTest, TellsARealFlightOfBothProtocols) {
    fly();
    const ToolResult result = runTool({"dump", kCapture});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(comparable(result.out), kFlight);
    // The same through a pipe.
    const ToolResult piped = runTool({"dump"}, withCapture(directory.Read(kCapture)));
    EXPECT_EQ(piped.exitCode, 0);
    EXPECT_EQ(piped.out, result.out);
    EXPECT_EQ(runTool({"dump", "--port", "48001", kCapture}).out, "");
}

TEST_F(DumpTest, TellsWhatCanBeReadOfADamagedCapture) {
    fly();
    const std::string whole = directory.Read(kCapture);
    directory.Write("cut.pcap", whole.substr(0, whole.size() - 10));
    const ToolResult result = runTool({"dump", "cut.pcap"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_TRUE(comparable(result.out).find("pressed and released\n") != std::string::npos)
        << result.out;
    EXPECT_TRUE(result.err.starts_with("orvane: cut.pcap: truncated dump file")) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

TEST_F(DumpTest, WritesRecords) {
    fly();
    const ToolResult json = runTool({"dump", "--json", kCapture});
    EXPECT_EQ(json.exitCode, 0);
    EXPECT_NE(json.out.find(R"("direction":"to plugin","protocol":"tarnel","message":"data",)"
                            R"("text":"1 items; 7 test/int = 42","values":{"item_count":1,)"
                            R"("items":[{"action":7,"value":42,"targets":["test/int"]}]}})"),
              std::string::npos)
        << json.out;
    const ToolResult csv = runTool({"dump", "--csv", "--absolute", kCapture});
    EXPECT_TRUE(
        csv.out.starts_with("time,client,direction,protocol,message,response_seconds,text,marks\n"))
        << csv.out;
    const std::regex record(
        "\n20[0-9]{2}-[0-9]{2}-[0-9]{2}T[0-9:]{8}\\.[0-9]{6}Z,127\\.0\\.0\\.1:"
        "[0-9]+,to plugin,tarnel,data,,1 items; 7 test/int = 42,\n");
    EXPECT_TRUE(std::regex_search(csv.out, record)) << csv.out;
}

TEST_F(DumpTest, MarksWhatThePluginMakesOfTornAndUnknownRequests) {
    startSimulator();
    LoopbackCapture capture(kCapture);
    {
        TestClient client;
        client.Send(tarnel(fromHex("DE AD BE EF 08 00 00 00 01 00 00 00 07 00")));
        client.Answer(*simulator);
        client.Send(fromHex("00 00"));
        ASSERT_TRUE(client.IsDelivered());
        simulator->Step(3);
        TestClient other;
        other.Exchange(*simulator, tarnel(dataMessage({{99, 1}})));
    }
    capture.Finish();
    EXPECT_EQ(simulator->LastLogMessage(),
              "WARNING@TarnelProtocol::tryParseData : unknown action id(99)");
    const std::string lines = comparable(runTool({"dump", kCapture}).out);
    EXPECT_NE(lines.find("> tarnel data: 1 items [torn: 14 of 20 bytes: answered with the outputs, "
                         "and left unread]\n"
                         "< tarnel outputs (T): aircraft 0xB9852EB1\n"
                         "> unknown identification: DE AD BE EF [unknown: no such protocol: its 4 "
                         "bytes are dropped without an answer]\n"),
              std::string::npos)
        << lines;
    EXPECT_NE(lines.find("> tarnel data: 1 items; 99 = 1 [unknown: action 99 is not declared: the "
                         "items from there on are not executed, and the message is left unread]\n"),
              std::string::npos)
        << lines;
}

// The simulator dies of it, and its log has the line that the tool tells.
TEST_F(DumpTest, TellsTheLineWithWhichTheSimulatorEnded) {
    startSimulator();
    LoopbackCapture capture(kCapture);
    TestClient client;
    client.Send(velmar(join({pollCommandStates(), registerCommand(1, "a/short")})));
    ASSERT_TRUE(client.IsDelivered());
    simulator->Tell("step 5");
    simulator->WaitForEnd();
    capture.Finish();
    const std::string line = "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref";
    const std::string lines = comparable(runTool({"dump", kCapture}).out);
    EXPECT_EQ(simulator->LastLogMessage(), line);
    EXPECT_NE(lines.find("[ends the simulator: " + line + "]\n"), std::string::npos) << lines;
}

TEST_F(DumpTest, ComplainsOfFilesThatAreNoCaptures) {
    const ToolResult missing = runTool({"dump", "missing.pcap"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "orvane: cannot read missing.pcap: No such file or directory\n");
    const ToolResult folder = runTool({"dump", "Resources"});
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_EQ(folder.err, "orvane: cannot read Resources: Is a directory\n");
    directory.Write("empty.pcap", "");
    const ToolResult empty = runTool({"dump", "empty.pcap"});
    EXPECT_EQ(empty.exitCode, 5);
    EXPECT_TRUE(empty.err.starts_with("orvane: empty.pcap: truncated dump file")) << empty.err;
    directory.Write("other.pcap", "this is the log of a flight\n");
    const ToolResult other = runTool({"dump", "other.pcap"});
    EXPECT_EQ(other.exitCode, 5);
    EXPECT_EQ(other.out, "");
    EXPECT_EQ(other.err, "orvane: other.pcap: unknown file format\n");
    EXPECT_EQ(runTool({"dump"}, withCapture("nothing")).exitCode, 5);
}

TEST_F(DumpTest, ComplainsOfFramesThatItDoesNotKnow) {
    // The header of a capture of Bluetooth.
    const Bytes header = fromHex(
        "D4 C3 B2 A1 02 00 04 00 00 00 00 00 00 00 00 00 FF FF 00 00 "
        "BB 00 00 00");
    directory.Write("other.pcap", std::string(header.begin(), header.end()));
    const ToolResult result = runTool({"dump", "other.pcap"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_TRUE(result.err.ends_with(" are not known here\n")) << result.err;
}
