#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "e2e/dissector/LiveCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What Wireshark shows of the fields and values of real messages.

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using LiveFieldsTest = LiveCaptureTest;

TEST_F(LiveFieldsTest, ShowsEveryFieldOfATarnelMessage) {
    TestClient client;
    client.Exchange(*simulator,
                    tarnelRequest(definitionsMessage({{.action = 1,
                                                       .targetIndex = 2,
                                                       .fixedInt = 3,
                                                       .repeatInterval = 4,
                                                       .intMinimum = -5,
                                                       .intMaximum = 6,
                                                       .targetType = RecordType::FloatArray,
                                                       .scaling = 3,
                                                       .rangeType = RecordType::Float,
                                                       .rangeIndex = 7,
                                                       .condition = 4,
                                                       .fixedFloat = 0.5F,
                                                       .floatMinimum = -1.5F,
                                                       .floatMaximum = 2.5F,
                                                       .useFixed = 8,
                                                       .hold = 9,
                                                       .held = 10,
                                                       .rangeMinimumName = "test/minimum",
                                                       .rangeMaximumName = "test/maximum",
                                                       .target = "test/floats",
                                                       .conditionName = "test/ints",
                                                       .conditionType = RecordType::IntArray,
                                                       .conditionIndex = 1}},
                                                     {{.id = 0xFFFFFFFF,
                                                       .name = "kyr/a",
                                                       .type = RecordType::FloatArray,
                                                       .first = 2,
                                                       .count = 3}})));
    client.Exchange(*simulator, tarnelRequest(dataMessage({{1, 77}})));
    std::vector<std::string> lines =
        runTshark(capture.Finish(), {"-Y", "orvane", "-V", "-O", "orvane"});
    std::erase_if(lines, [](const std::string& line) {
        return !line.starts_with(' ') || line.find("[Re") != std::string::npos;
    });
    EXPECT_THAT(
        lines,
        ElementsAreArray(std::vector<std::string>{
            "    Identification: Tarnel (0x44332211)", "    Message: DEFINITIONS (0xddeeffc0)",
            "    Size of an input record: 488", "    Input records: 1",
            "    Size of an output record: 116", "    Output records: 1",
            "    Input: action 1, test/floats", "        Action: 1", "        Reserved: 0",
            "        Reserved: 0", "        Target index: 2", "        Fixed int value: 3",
            "        Repeat interval, ms: 4", "        Int range, minimum: -5",
            "        Int range, maximum: 6", "        Target type: element of a float array (4)",
            "        Scaling: range of two datarefs (3)",
            "        Type of the range datarefs: float (2)",
            "        Element of the range datarefs: 7",
            "        Condition: skipped when the dataref is 0 (4)",
            "        Fixed float value: 0.5", "        Float range, minimum: -1.5",
            "        Float range, maximum: 2.5", "        Use fixed value: 8",
            "        Hold command: 9", "        Reserved: 0", "        Command is held: 10",
            "        Range dataref, minimum: test/minimum",
            "        Range dataref, maximum: test/maximum", "        Target: test/floats",
            "        Condition dataref: test/ints",
            "        Type of the condition dataref: element of an int array (3)",
            "        Element of the condition dataref: 1", "    Output: 4294967295, kyr/a",
            "        Identifier: 4294967295", "        Name: kyr/a",
            "        Type: float array (4)", "        First element: 2", "        Elements: 3",
            // The answer.
            "    Length: 32", "    Entry: 4294967295, kyr/a = 3 floats",
            "        Identifier: 4294967295", "        [Name: kyr/a]", "        Length: 12",
            "        Float: 0", "        Float: 0", "        Float: 0", "    Aircraft: 0xB9852EB1",
            "        Aircraft id: 0xb9852eb1",
            // The item.
            "    Identification: Tarnel (0x44332211)", "    Message: DATA (0xefbeadde)",
            "    Size of an item: 8", "    Items: 1", "    Item: action 1 = 77, test/floats",
            "        Action: 1", "        Value: 77", "        [Name: test/floats]",
            // The answer.
            "    Length: 32", "    Entry: 4294967295, kyr/a = 3 floats",
            "        Identifier: 4294967295", "        [Name: kyr/a]", "        Length: 12",
            "        Float: 0", "        Float: 0", "        Float: 0", "    Aircraft: 0xB9852EB1",
            "        Aircraft id: 0xb9852eb1"}));
}

TEST_F(LiveFieldsTest, ShowsValuesOfEveryTypeOfTarnel) {
    simulator->Ask("set test/int -5");
    simulator->Ask("set test/float 0.1");
    simulator->Ask("set test/ints 1,2,3,4,5,6,7,8");
    simulator->Ask("set test/floats nan,0.5,0,0,0,0,0,0");
    const std::vector<std::vector<OutputRecord>> definitions{
        {{.id = 1, .name = "test/int", .type = RecordType::Int},
         {.id = 2, .name = "test/float", .type = RecordType::Float},
         {.id = 3, .name = "test/ints", .type = RecordType::IntArray, .first = 2, .count = 3}},
        {{.id = 4, .name = "test/floats", .type = RecordType::FloatArray, .count = 2},
         {.id = 5, .name = "kyr/button", .type = RecordType::Command},
         {.id = 6, .name = "test/once", .type = RecordType::Command}},
        {{.id = 7, .name = "test/int", .type = 5},
         {.id = 8, .name = "", .type = RecordType::Int},
         {.id = 9, .name = "test/ints", .type = RecordType::IntArray}}};
    TestClient client;
    for (const std::vector<OutputRecord>& outputs : definitions) {
        client.Exchange(*simulator, tarnelRequest(definitionsMessage({}, outputs)));
    }
    EXPECT_THAT(
        fieldsOf(capture.Finish(),
                 {"_ws.col.Info", "orvane.tarnel.entry.int", "orvane.tarnel.entry.float"},
                 "tcp.srcport == 48000 and orvane"),
        ElementsAre(
            "Tarnel answer: test/int = -5, test/float = 0.1, test/ints = 3 ints|-5,3,4,5|0.1",
            "Tarnel answer: test/floats = 2 floats, kyr/button = up, test/once: no value||"
            "nan,0.5",
            "Tarnel answer: test/int: no value, output 8 = 0, test/ints = 0 ints|0|"));
}

TEST_F(LiveFieldsTest, ShowsValuesOfEveryTypeOfVelmar) {
    TestClient client;
    client.Exchange(
        *simulator,
        velmarRequest({registerDataref(1, 1, 0, "test/int"), registerDataref(2, 2, 0, "test/float"),
                       registerDataref(3, 3, 0, "test/int"), registerDataref(4, 4, 2, "test/ints"),
                       registerDataref(5, 5, 2, "test/floats"),
                       registerDataref(6, 0, 0, "test/int")}));
    client.Exchange(*simulator, velmarRequest({writeDataref(1, i32(-5)), writeDataref(2, f32(0.1F)),
                                               readDataref(1)}));
    client.Exchange(*simulator,
                    velmarRequest({writeDataref(3, {200}), readDataref(2), readDataref(3)}));
    client.Exchange(*simulator, velmarRequest({writeDataref(4, fromHex("01 00 00 00 02 00 00 00")),
                                               writeDataref(5, join({f32(0.5F), f32(-2.0F)}))}));
    client.Exchange(*simulator, velmarRequest({readDataref(4), readDataref(5), readDataref(6)}));
    EXPECT_THAT(
        fieldsOf(capture.Finish(),
                 {"_ws.col.Info", "orvane.velmar.int", "orvane.velmar.float", "orvane.velmar.byte"},
                 "orvane and frame.number > 7"),
        ElementsAre(
            "Velmar: write test/int = -5, write test/float = 0.1, read test/int|-5|0.1|",
            "Velmar answer: write test/int = -5: ok, write test/float = 0.1: ok, read test/int = "
            "-5|-5||",
            "Velmar: write test/int = 200, read test/float, read test/int|||200",
            "Velmar answer: write test/int = 200: ok, read test/float = 0.1, read test/int = 200|"
            "|0.1|200",
            "Velmar: write test/ints = 2 ints, write test/floats = 2 floats|1,2|0.5,-2|",
            "Velmar answer: write test/ints = 2 ints: ok, write test/floats = 2 floats: ok|||",
            "Velmar: read test/ints, read test/floats, read test/int|||",
            "Velmar answer: read test/ints = 2 ints, read test/floats = 2 floats, read test/int: "
            "ok|1,2|0.5,-2|"));
}

TEST_F(LiveFieldsTest, ShowsTheEffectOfUnlistedValues) {
    TestClient client;
    client.Exchange(*simulator,
                    tarnelRequest(definitionsMessage({{.action = 1, .targetType = 2},
                                                      {.action = 2,
                                                       .targetType = -1,
                                                       .scaling = 4,
                                                       .rangeType = 3,
                                                       .condition = 5,
                                                       .conditionType = 6}},
                                                     {{.id = 1, .name = "test/int", .type = 5}})));
    client.Exchange(*simulator, velmarRequest({registerDataref(1, 6, 0, "test/int"),
                                               registerCommand(9, "test/hold"), runCommand(9, 2),
                                               runCommand(9, 0), runCommand(9, 255), u32(77)}));
    std::vector<std::string> lines =
        runTshark(capture.Finish(), {"-Y", "orvane", "-V", "-O", "orvane"});
    std::erase_if(lines, [](const std::string& line) {
        return !line.starts_with("        ") || !line.ends_with(')');
    });
    EXPECT_THAT(
        lines,
        ElementsAre(
            "        Target type: float (2)", "        Scaling: value / 65535 (0)",
            "        Type of the range datarefs: none (0)", "        Condition: never skipped (0)",
            "        Type of the condition dataref: none (0)",
            "        Target type: none, does nothing (-1)", "        Scaling: value / 65535 (4)",
            "        Type of the range datarefs: none (3)", "        Condition: never skipped (5)",
            "        Type of the condition dataref: none (6)",
            "        Type: none, has no value (5)", "        Type: register dataref (1)",
            "        Data type: none (6)", "        Type: register command (3)",
            "        Type: run command (7)", "        Action: begin (2)",
            "        Type: run command (7)", "        Action: end (0)",
            "        Type: run command (7)", "        Action: end (255)",
            "        Type: none, skipped (77)", "        Type: register dataref (1)",
            "        Status: success (1)", "        Type: register command (3)",
            "        Status: success (1)"));
}

} // namespace
