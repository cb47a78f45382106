#include "tools/orvane/dump/TarnelRequest.h"

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/TarnelMessages.h"

using orvane::tool::dump::Mark;
using orvane::tool::dump::MarkKind;
using orvane::tool::dump::readTarnelRequest;
using orvane::tool::dump::TarnelDefinitions;
using orvane::tool::dump::TarnelRequest;
using Marks = std::vector<Mark>;

namespace {

TarnelDefinitions declared(std::int32_t action, const std::string& target) {
    TarnelDefinitions definitions;
    definitions.targets[action] = {target};
    return definitions;
}

TarnelRequest read(const Bytes& bytes, const TarnelDefinitions& definitions = {}) {
    return readTarnelRequest(bytes, definitions);
}

// Four words behind the specifier.
Bytes definitionsHeader(std::uint32_t inputSize, std::uint32_t inputs, std::uint32_t outputSize,
                        std::uint32_t outputs) {
    return join(
        {fromHex("C0 FF EE DD"), u32(inputSize), u32(inputs), u32(outputSize), u32(outputs)});
}

} // namespace

TEST(TarnelRequestTest, TakesNothingForAQuery) {
    const TarnelRequest request = read({});
    EXPECT_EQ(request.message.kind, "query");
    EXPECT_EQ(request.message.text, "for the outputs");
    EXPECT_EQ(request.answer, TarnelRequest::Answer::Outputs);
    EXPECT_TRUE(request.message.marks.empty());
}

TEST(TarnelRequestTest, ReadsVersion) {
    const TarnelRequest request = read(fromHex("B1 6B 00 B5"));
    EXPECT_EQ(request.message.protocol, "tarnel");
    EXPECT_EQ(request.message.kind, "version");
    EXPECT_EQ(request.consumed, 4U);
    EXPECT_EQ(request.answer, TarnelRequest::Answer::Version);
    EXPECT_TRUE(request.message.marks.empty());
}

TEST(TarnelRequestTest, LeavesTheNextMessageAlone) {
    EXPECT_EQ(read(fromHex("B1 6B 00 B5 11 22 33 44")).consumed, 4U);
    EXPECT_EQ(read(fromHex("DE AD BE EF 08 00 00 00 00 00 00 00 11 22 33 44")).consumed, 12U);
}

TEST(TarnelRequestTest, MarksAFragmentAsTorn) {
    const TarnelRequest request = read(fromHex("B1 6B 00"));
    EXPECT_EQ(request.message.kind, "fragment");
    EXPECT_EQ(request.message.text, "B1 6B 00");
    EXPECT_EQ(request.consumed, 0U);
    EXPECT_EQ(request.answer, TarnelRequest::Answer::Outputs);
    EXPECT_EQ(
        request.message.marks,
        (Marks{{MarkKind::Torn, "3 of 4 bytes: answered with the outputs, and left unread"}}));
}

TEST(TarnelRequestTest, MarksAnUnknownMessage) {
    const TarnelRequest request = read(fromHex("78 56 34 12 00 00"));
    EXPECT_EQ(request.message.kind, "unknown");
    EXPECT_EQ(request.message.text, "0x12345678 and 2 bytes");
    EXPECT_EQ(request.consumed, 0U);
    EXPECT_EQ(request.message.marks,
              (Marks{{MarkKind::Unknown,
                      "no such message: answered with the outputs, and left unread"}}));
}

TEST(TarnelRequestTest, ReadsDefinitions) {
    Bytes input(488, 0);
    input[0] = 7;    // action
    input[20] = 200; // repeat interval
    input[32] = 2;   // target type float
    input[36] = 2;   // scaling by float range
    input[58] = 0x80;
    input[59] = 0xBF; // from -1.0
    input[62] = 0x80;
    input[63] = 0x3F; // to 1.0
    input[280] = 's';
    input[281] = '/';
    input[282] = 'x';
    input[484] = 3; // element of the condition dataref
    Bytes output(116, 0);
    output[0] = 2;
    output[4] = 'k';
    output[5] = 'y';
    output[6] = 'r';
    output[7] = '/';
    output[8] = 'b';
    output[104] = 3;
    output[108] = 1;
    output[112] = 4;
    const TarnelRequest request =
        read(join({definitionsHeader(488, 1, 116, 1), input, output, fromHex("FF")}));
    EXPECT_EQ(request.message.kind, "definitions");
    EXPECT_EQ(request.message.text,
              "1 inputs, 1 outputs; input 7 s/x float; output 2 kyr/b int[4] from 1");
    EXPECT_TRUE(request.message.marks.empty());
    EXPECT_EQ(request.consumed, 20U + 488U + 116U);
    EXPECT_EQ(request.message.values["inputs"][0].dump(),
              R"({"action":7,"target_index":0,"fixed_int":0,"repeat_interval_ms":200,)"
              R"("int_minimum":0,"int_maximum":0,"target_type":2,"scaling":2,"range_type":0,)"
              R"("range_index":0,"condition":0,"fixed_float":0.0,"float_minimum":-1.0,)"
              R"("float_maximum":1.0,"use_fixed":0,"hold":0,"held":0,"range_minimum_name":"",)"
              R"("range_maximum_name":"","target":"s/x","condition_name":"","condition_type":0,)"
              R"("condition_index":3})");
    EXPECT_EQ(request.message.values["outputs"][0].dump(),
              R"({"output":2,"name":"kyr/b","type":3,"first":1,"count":4})");
    ASSERT_TRUE(request.definitions.has_value());
    EXPECT_EQ(request.definitions->targets.at(7), std::vector<std::string>{"s/x"});
    ASSERT_EQ(request.definitions->outputs.size(), 1U);
    EXPECT_EQ(request.definitions->outputs[0].TypeText(), "int[4] from 1");
}

TEST(TarnelRequestTest, CutsANameThatFillsItsField) {
    OutputRecord output{.id = 1, .type = 2};
    output.name = std::string(100, 'n');
    const TarnelRequest request = read(definitionsMessage({}, {output}));
    ASSERT_TRUE(request.definitions.has_value());
    EXPECT_EQ(request.definitions->outputs.at(0).name, std::string(99, 'n'));
}

TEST(TarnelRequestTest, NamesWhatTheItemsOfDataAreFor) {
    const TarnelRequest request =
        read(fromHex("DE AD BE EF 08 00 00 00 01 00 00 00 07 00 00 00 00 C0 00 00"),
             declared(7, "sim/yoke"));
    EXPECT_EQ(request.message.kind, "data");
    EXPECT_EQ(request.message.text, "1 items; 7 sim/yoke = 49152");
    EXPECT_EQ(request.message.values.dump(),
              R"({"item_count":1,"items":[{"action":7,"value":49152,"targets":["sim/yoke"]}]})");
    EXPECT_EQ(request.consumed, 20U);
    EXPECT_TRUE(request.message.marks.empty());
}

TEST(TarnelRequestTest, MarksTornHeadersAndMessages) {
    EXPECT_EQ(
        read(fromHex("C0 FF EE DD E8 01 00 00")).message.marks,
        (Marks{{MarkKind::Torn, "8 of 20 bytes: answered with the outputs, and left unread"}}));
    EXPECT_EQ(
        read(definitionsHeader(488, 1, 116, 2)).message.marks,
        (Marks{{MarkKind::Torn, "20 of 740 bytes: answered with the outputs, and left unread"}}));
    EXPECT_EQ(
        read(fromHex("DE AD BE EF 08 00")).message.marks,
        (Marks{{MarkKind::Torn, "6 of 12 bytes: answered with the outputs, and left unread"}}));
    const TarnelRequest data = read(fromHex("DE AD BE EF 08 00 00 00 02 00 00 00 07 00 00 00"));
    EXPECT_EQ(
        data.message.marks,
        (Marks{{MarkKind::Torn, "16 of 28 bytes: answered with the outputs, and left unread"}}));
    EXPECT_EQ(data.consumed, 0U);
    EXPECT_FALSE(data.definitions.has_value());
}

TEST(TarnelRequestTest, MarksAnActionThatWasNotDeclared) {
    const TarnelRequest request = read(dataMessage({{7, 1}, {99, 2}, {7, 3}}), declared(7, "a"));
    EXPECT_EQ(request.message.text, "3 items; 7 a = 1; 99 = 2");
    EXPECT_EQ(request.message.marks,
              (Marks{{MarkKind::Unknown,
                      "action 99 is not declared: the items from there on are not executed, and "
                      "the message is left unread"}}));
    EXPECT_EQ(request.consumed, 0U);
}

TEST(TarnelRequestTest, DoubtsNoActionWhenDefinitionsMayBeMissing) {
    TarnelDefinitions definitions;
    definitions.areKnown = false;
    const TarnelRequest request = read(dataMessage({{99, 2}}), definitions);
    EXPECT_TRUE(request.message.marks.empty());
    EXPECT_EQ(request.consumed, 20U);
}

TEST(TarnelRequestTest, MarksWhatEndsTheSimulator) {
    // Of sizes 0, so that nothing seems to be missing.
    const TarnelRequest inInts = read(definitionsHeader(0, 1, 0, 0));
    EXPECT_TRUE(inInts.endsSimulator);
    EXPECT_EQ(inInts.message.marks.back(),
              (Mark{MarkKind::EndsSimulator,
                    "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4"}));
    for (const std::size_t there : {std::size_t{52}, std::size_t{63}}) {
        const TarnelRequest inFloats = read(join({definitionsHeader(0, 1, 0, 0), zeros(there)}));
        EXPECT_EQ(inFloats.message.marks.back(),
                  (Mark{MarkKind::EndsSimulator,
                        "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4"}));
    }
    for (const std::size_t there : {std::size_t{51}, std::size_t{64}, std::size_t{487}}) {
        const TarnelRequest elsewhere = read(join({definitionsHeader(0, 1, 0, 0), zeros(there)}));
        EXPECT_EQ(elsewhere.message.marks.back(),
                  (Mark{MarkKind::EndsSimulator,
                        "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4"}));
    }
    EXPECT_FALSE(read(join({definitionsHeader(0, 1, 0, 0), zeros(488)})).endsSimulator);
    EXPECT_TRUE(read(join({definitionsHeader(0, 0, 0, 1), zeros(115)})).endsSimulator);
    EXPECT_FALSE(read(join({definitionsHeader(0, 0, 0, 1), zeros(116)})).endsSimulator);
}

TEST(TarnelRequestTest, MarksDataThatEndsTheSimulator) {
    const Bytes header = fromHex("DE AD BE EF 00 00 00 00 02 00 00 00");
    const TarnelRequest request =
        read(join({header, fromHex("07 00 00 00 01 00 00 00 07 00 00")}), declared(7, "a"));
    EXPECT_TRUE(request.endsSimulator);
    EXPECT_EQ(request.message.marks.back(),
              (Mark{MarkKind::EndsSimulator,
                    "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4"}));
    // A value that is cut does not; the missing bytes are zeros.
    const TarnelRequest cut =
        read(join({header, fromHex("07 00 00 00 01 00 00 00 07 00 00 00 05")}), declared(7, "a"));
    EXPECT_FALSE(cut.endsSimulator);
    EXPECT_EQ(cut.message.text, "2 items; 7 a = 1; 7 a = 5");
    EXPECT_EQ(cut.message.marks.back(), (Mark{MarkKind::Odd, "the last value is cut"}));
    // An action that is not known stops before.
    EXPECT_FALSE(read(join({header, fromHex("09 00 00 00 01 00 00 00")})).endsSimulator);
}

TEST(TarnelRequestTest, MarksSizesThatAreNotTheUsualOnes) {
    const TarnelRequest request = read(join({definitionsHeader(500, 1, 116, 0), zeros(500)}));
    EXPECT_EQ(
        request.message.marks,
        (Marks{{MarkKind::Odd, "input records announced with 500 bytes each, read with 488"}}));
    // What was announced and not read stays in front of the next request.
    EXPECT_EQ(request.consumed, 508U);
    EXPECT_EQ(read(definitionsHeader(1, 0, 2, 0)).message.marks, Marks{});
}

TEST(TarnelRequestTest, KnowsAMessageThatSeemsToHaveNoSize) {
    // 0xFFFFFFEC and 20 add up to 0.
    const TarnelRequest request = read(join({definitionsHeader(0xFFFFFFEC, 1, 0, 0), zeros(488)}));
    EXPECT_EQ(request.answer, TarnelRequest::Answer::OutputsTwice);
    EXPECT_EQ(request.consumed, 0U);
    EXPECT_TRUE(request.definitions.has_value());
    EXPECT_EQ(request.message.marks.back(),
              (Mark{MarkKind::Odd, "its size adds up to 0: handled, and left unread"}));
}

TEST(TarnelRequestTest, MarksOutputsThatDoNotDoWhatTheySeemTo) {
    const TarnelRequest request =
        read(definitionsMessage({}, {{.id = 1, .name = "sim/command", .type = 6},
                                     {.id = 2, .name = "kyr/array", .type = 3, .count = -1}}));
    EXPECT_EQ(request.message.marks,
              (Marks{{MarkKind::Odd, "output 1: only commands under kyr/ are observed"},
                     {MarkKind::Odd,
                      "output 2: -1 elements close the connection, unless the "
                      "dataref exists already"}}));
}
