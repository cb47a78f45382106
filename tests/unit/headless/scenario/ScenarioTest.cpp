#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/lists/TextLines.h"
#include "headless/scenario/JunitReport.h"
#include "headless/scenario/Scenario.h"
#include "headless/scenario/ScenarioRun.h"
#include "scenario/FlightTest.h"
#include "support/TextOf.h"

using headless::JunitReport;
using headless::Scenario;
using headless::ScenarioRun;
using headless::TextFileError;

class ScenarioTest : public FlightTest {
protected:
    static Scenario parse(const std::string& text) {
        std::istringstream stream(text);
        return Scenario::Parse(stream, "a.scenario");
    }
    static std::string errorOfParsing(const std::string& text) {
        return textOf<TextFileError>([&] { parse(text); });
    }
    int play(const std::string& text) {
        const Scenario scenario = parse(text);
        ScenarioRun run(scenario, told, complained);
        run.Play(flight);
        JunitReport(folder.Path("junit.xml")).Write(run);
        return run.Status();
    }
    // The report without the times, which differ.
    std::string report() const {
        std::string text = folder.Read("junit.xml");
        for (std::size_t at = 0; (at = text.find(" time=\"", at)) != std::string::npos;) {
            text.erase(at, text.find('"', at + 7) + 1 - at);
        }
        return text;
    }

    std::ostringstream told;
    std::ostringstream complained;
};

TEST_F(ScenarioTest, ReadsStatementsAndTheirLines) {
    const Scenario scenario = parse("# A remark.\n\npause\r\n  frames 10  # ten\n");
    ASSERT_EQ(scenario.lines.size(), 2U);
    EXPECT_EQ(scenario.lines[0].number, 3);
    EXPECT_EQ(scenario.lines[0].text, "pause");
    EXPECT_EQ(scenario.lines[1].number, 4);
    EXPECT_EQ(scenario.lines[1].text, "frames 10");
}

TEST_F(ScenarioTest, NamesTheLineThatIsNotAStatement) {
    EXPECT_EQ(errorOfParsing("pause\n\nfly away\n"),
              "a.scenario:3: unknown statement \"fly\"; see help");
    EXPECT_EQ(errorOfParsing("frames many\n"),
              "a.scenario:1: \"many\" is not a number that fits here");
    EXPECT_THROW(Scenario::Read(folder.Path("none")), TextFileError);
}

TEST_F(ScenarioTest, CarriesOutStatementsAndTellsWhatIsAsked) {
    EXPECT_EQ(play("frames 3\nget fake/counter\nexpect fake/counter == 3\nframes\n"), 0);
    EXPECT_EQ(told.str(), "fake/counter = 3\nframes 3\n");
    EXPECT_EQ(complained.str(), "");
}

TEST_F(ScenarioTest, GoesOnAfterAnExpectationThatIsNotMet) {
    EXPECT_EQ(play("frames 3\nexpect fake/counter == 4\nframes 1\nexpect fake/counter == 4\n"), 3);
    EXPECT_EQ(complained.str(), "headless-sim: a.scenario:2: expected fake/counter == 4, got 3\n");
    EXPECT_EQ(frames(), 4);
}

TEST_F(ScenarioTest, EndsAfterAStatementThatCannotBeCarriedOut) {
    EXPECT_EQ(play("press no/command\nframes 5\n"), 3);
    EXPECT_EQ(complained.str(), "headless-sim: a.scenario:1: no such command: no/command\n");
    EXPECT_EQ(frames(), 0);
}

TEST_F(ScenarioTest, EndsWithTheStatusThatItQuitsWith) {
    EXPECT_EQ(play("quit 7\nframes 5\n"), 7);
    EXPECT_EQ(frames(), 0);
    EXPECT_EQ(play("expect fake/counter == 1\nquit 7\n"), 3) << "a failure counts more";
}

TEST_F(ScenarioTest, AnInterruptedScenarioHasNotPassed) {
    interrupted = true;
    EXPECT_EQ(play("pause\nwait 2s\nexpect fake/counter == 0\n"), 3);
    EXPECT_EQ(complained.str(),
              "headless-sim: a.scenario:2: the run ended before the scenario did\n");
}

TEST_F(ScenarioTest, ReportsEachCheckAndWhatWentWrong) {
    play("frames 1\nexpect fake/counter > 0\nexpect fake/counter < 1\nset no/dataref 1\n");
    EXPECT_EQ(report(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<testsuites>\n"
              "  <testsuite name=\"a.scenario\" tests=\"3\" failures=\"1\" errors=\"1\">\n"
              "    <testcase classname=\"a.scenario\" name=\"2: expect fake/counter &gt; 0\"/>\n"
              "    <testcase classname=\"a.scenario\" name=\"3: expect fake/counter &lt; 1\">\n"
              "      <failure message=\"a.scenario:3: expected fake/counter &lt; 1, got 1\"/>\n"
              "    </testcase>\n"
              "    <testcase classname=\"a.scenario\" name=\"4: set no/dataref 1\">\n"
              "      <error message=\"a.scenario:4: no such dataref: no/dataref\"/>\n"
              "    </testcase>\n"
              "  </testsuite>\n"
              "</testsuites>\n");
}

TEST_F(ScenarioTest, AReportThatCannotBeWrittenIsRefused) {
    EXPECT_THROW(JunitReport(folder.Path("none/junit.xml")), std::runtime_error);
}
