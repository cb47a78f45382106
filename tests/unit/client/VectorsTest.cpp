#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnelVectors.h"
#include "UnexpectedAnswer.h"
#include "VelmarVectors.h"
#include "support/WireVectors.h"
#include "tarnel/Wire.h"
#include "velmar/Wire.h"

// The library follows tests/vectors: its requests have these bytes, and it reads every answer as
// its meaning says, or as unexpected.

namespace {

using namespace orvane;
using detail::ByteReader;
using detail::ByteWriter;
using detail::UnexpectedAnswer;

// The client's side of one conversation.
class VectorsTest : public testing::TestWithParam<WireVector> {
protected:
    void expectRequest(const WireStep& step) {
        if (step.Is("request", "raw")) {
            return;
        }
        asked = step;
        const std::string hex = toHex(encoded(step));
        if (step.text.ends_with(" torn")) {
            EXPECT_TRUE(hex.starts_with(toHex(step.bytes))) << hex;
            EXPECT_GT(hex.size(), toHex(step.bytes).size());
        } else {
            EXPECT_EQ(hex, toHex(step.bytes));
        }
    }

    void expectAnswer(const WireStep& step) {
        constexpr long kFrame = 4;
        if (step.Is("answer", "unexpected")) {
            EXPECT_THROW(decode({step.bytes.begin() + kFrame, step.bytes.end()}, nullptr),
                         UnexpectedAnswer);
        } else if (step.Is("answer", "version") || step.Is("answer", "outputs") ||
                   step.Is("answer", "replies")) {
            decode({step.bytes.begin() + kFrame, step.bytes.end()}, &step);
        }
    }

private:
    Bytes encoded(const WireStep& step) {
        if (step.Is("request", "version")) {
            return tarnel::wire::versionRequest();
        }
        if (step.Is("request", "define")) {
            definitions = definitionsOf(step.meaning);
            return tarnel::wire::definitionsRequest(definitions);
        }
        if (step.Is("request", "exchange")) {
            return tarnel::wire::dataRequest(itemsOf(step.meaning));
        }
        ByteWriter writer = velmar::wire::beginRequest();
        for (const WireWords& words : step.meaning) {
            writePacket(writer, words, datarefs);
        }
        return writer.bytes();
    }

    // Without an expectation, by what the request asks for.
    void decode(const Bytes& payload, const WireStep* expected) {
        if (asked.Is("request", "version")) {
            const tarnel::Version version = tarnel::wire::readVersion(payload);
            EXPECT_EQ(version.parts, (std::array<std::uint8_t, 4>{1, 0, 7, 10}));
            EXPECT_EQ(version.revision, 6U);
        } else if (asked.Is("request", "packets")) {
            ByteReader reader(payload);
            for (const WireWords& words :
                 expected != nullptr ? expected->meaning : successesOf(asked)) {
                expectReply(reader, words, datarefs);
            }
            reader.expectEnd();
        } else {
            const tarnel::Answer answer = tarnel::wire::readAnswer(payload, definitions.outputs());
            if (expected != nullptr) {
                expectOutputs(answer, definitions, *expected);
            }
        }
    }

    static std::vector<WireWords> successesOf(const WireStep& request) {
        std::vector<WireWords> replies;
        for (WireWords words : request.meaning) {
            if (words.at(1) == "poll") {
                replies.push_back({"reply", "poll"});
            } else if (words.at(1) != "run") {
                replies.push_back({"reply", words.at(1), words.at(2), "ok"});
            }
        }
        return replies;
    }

    WireStep asked;
    tarnel::Definitions definitions;
    VectorDatarefs datarefs;
};

TEST_P(VectorsTest, IsWhatTheClientSendsAndReads) {
    for (const WireStep& step : GetParam().steps) {
        SCOPED_TRACE(step.place);
        if (step.Is("request")) {
            expectRequest(step);
        } else if (step.Is("answer")) {
            expectAnswer(step);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Wire, VectorsTest, testing::ValuesIn(readWireVectors()),
                         [](const auto& test) { return testNameOf(test.param); });

} // namespace
