#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/plugin/LogLines.h"
#include "tools/orvane/plugin/LogReport.h"

using orvane::tool::plugin::errorTextOf;
using orvane::tool::plugin::Explanation;
using orvane::tool::plugin::explanationOf;
using orvane::tool::plugin::explanationsOn;
using orvane::tool::plugin::LogReport;
using orvane::tool::plugin::messageIn;
using orvane::tool::plugin::readLog;
using testing::ElementsAre;

namespace {

constexpr const char* kPage = R"(# Lines

| Code | Meaning |
|---|---|
| 24 | not a line |

| Line | What happened | Why | What to do |
|---|---|---|---|
| `Warning@A : recv() : <error>` | It broke. | The `network`. | Nothing. |
| `Warning@A : recv() : enough < 4`<br>`Warning@B` | It ended. | It was done. | Rest. |
| `FATAL@C : <byte> bytes, got <number>` | Torn. | Cut. | Send it whole. |

| not | in | the | table |
)";

class LogReportTest : public testing::Test {
protected:
    std::string whatHappened(const std::string& message) const {
        const Explanation* const found = explanationOf(explanations, message);
        return found == nullptr ? "unknown" : found->happened;
    }

    const std::vector<Explanation> explanations = explanationsOn(kPage);
};

TEST_F(LogReportTest, ReadsTheTablesOfLinesAndNoOthers) {
    ASSERT_EQ(explanations.size(), 3U);
    EXPECT_THAT(
        explanations[1].messages,
        ElementsAre(ElementsAre("Warning@A : recv() : enough < 4"), ElementsAre("Warning@B")));
    EXPECT_THAT(explanations[2].messages,
                ElementsAre(ElementsAre("FATAL@C : ", " bytes, got ", "")));
    EXPECT_EQ(explanations[0].why, "The network.");
    EXPECT_EQ(explanations[0].toDo, "Nothing.");
}

TEST_F(LogReportTest, FindsTheClosestExplanation) {
    EXPECT_EQ(whatHappened("Warning@A : recv() : Unknown Socket Error Code 104"), "It broke.");
    EXPECT_EQ(whatHappened("Warning@A : recv() : enough < 4"), "It ended.");
    EXPECT_EQ(whatHappened("Warning@B"), "It ended.");
    EXPECT_EQ(whatHappened("Warning@B more"), "unknown");
    EXPECT_EQ(whatHappened("Warning@"), "unknown");
}

// A length of ten is a line end.
TEST_F(LogReportTest, KnowsALineThatItsRawByteCutOff) {
    EXPECT_EQ(whatHappened("FATAL@C : A bytes, got 7"), "Torn.");
    EXPECT_EQ(whatHappened("FATAL@C : "), "Torn.");
}

TEST_F(LogReportTest, TakesTheMessageAfterNameDateAndTime) {
    EXPECT_EQ(messageIn("XPlaneOrvane 2026-3-5 9:7:2 Warning@B"), "Warning@B");
    EXPECT_EQ(messageIn("XPlaneOrvane 2026-3-5 Warning@B"), "");
    EXPECT_EQ(messageIn("XPlaneOrvane"), "");
    EXPECT_EQ(messageIn("0:00:01.000 I/PLG: XPlaneOrvane 2026-3-5 9:7:2 x"), "");
}

TEST_F(LogReportTest, CountsWhatMeansTheSameAndKeepsTheLast) {
    const TemporaryDirectory directory;
    directory.Write("Log.txt",
                    "Some other plugin: Warning@B\n"
                    "XPlaneOrvane 2026-3-5 9:7:1 PluginStart\n"
                    "XPlaneOrvane 2026-3-5 9:7:1 Verbose@TcpServer::Init\n"
                    "XPlaneOrvane 2026-3-5 9:7:2 Warning@B\n"
                    "XPlaneOrvane 2026-3-5 9:7:3 Warning@New : thing\n"
                    "XPlaneOrvane 2026-3-5 9:7:4 Warning@A : recv() : enough < 4\n"
                    "XPlaneOrvane 2026-3-5 9:7:5 FATAL@C : \n bytes, got 3\n");
    const LogReport report = readLog("Log.txt", explanations);
    EXPECT_EQ(report.verboseCount, 2U);
    ASSERT_EQ(report.lines.size(), 3U);
    EXPECT_EQ(report.lines[0].explanation, &explanations[1]);
    EXPECT_EQ(report.lines[0].count, 2U);
    EXPECT_EQ(report.lines[0].last, "XPlaneOrvane 2026-3-5 9:7:4 Warning@A : recv() : enough < 4");
    EXPECT_EQ(report.lines[1].explanation, nullptr);
    EXPECT_EQ(report.lines[1].last, "XPlaneOrvane 2026-3-5 9:7:3 Warning@New : thing");
    EXPECT_EQ(report.lines[2].explanation, &explanations[2]);
}

// Mail and other systems' editors make such ends.
TEST_F(LogReportTest, DoesNotMindCarriageReturnsAtTheEnds) {
    const TemporaryDirectory directory;
    directory.Write("Log.txt", "XPlaneOrvane 2026-3-5 9:7:2 Warning@B\r\n");
    const LogReport report = readLog("Log.txt", explanations);
    ASSERT_EQ(report.lines.size(), 1U);
    EXPECT_EQ(report.lines[0].explanation, &explanations[1]);
    EXPECT_EQ(report.lines[0].last, "XPlaneOrvane 2026-3-5 9:7:2 Warning@B");
}

TEST_F(LogReportTest, RefusesALogThatIsNotAFile) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::mkfifo("Log.txt", 0600), 0);
    try {
        readLog("Log.txt", explanations);
        FAIL() << "it was read";
    } catch (const orvane::tool::Failure& failure) {
        EXPECT_STREQ(failure.what(), "Log.txt: not a file");
    }
}

TEST_F(LogReportTest, AddsTheSystemsTextToAnErrorCode) {
    EXPECT_EQ(errorTextOf("x : bind() : Unknown Socket Error Code 98"), "Address already in use");
    EXPECT_EQ(errorTextOf("x : bind() : Unknown Socket Error Code"), "");
    EXPECT_EQ(errorTextOf("x : WSAEINTR - Interrupted function call."), "");
}

} // namespace
