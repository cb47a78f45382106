#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <locale>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/LoggingService.h"
#include "headless/xplm/Simulator.h"
#include "support/FakeWallClock.h"
#include "support/GroupedDigits.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::KilledBySignal;

// 2024-03-05 09:07:02 and 2031-12-31 23:59:58, both UTC.
constexpr std::int64_t kMarchMorning = 1'709'629'622'000'000'000;
constexpr std::int64_t kLastSeconds = 1'956'527'998'000'000'000;

class LoggingServiceTest : public testing::Test {
protected:
    LoggingServiceTest() {
        setTimeZone("UTC0");
        clock.Set(kMarchMorning);
    }

    static void setTimeZone(const char* zone) {
        ::setenv("TZ", zone, 1);
        ::tzset();
    }

    const std::string& text() { return simulator.Log().Text(); }

    void logAtLevelOne(LogLevel threshold) {
        simulator.Log().EchoToStderr(true);
        service.SetLogLevel(threshold);
        service.Log(LogLevelError, "Error@TcpServer::Init : bind() : text");
    }

    headless::Simulator simulator;
    FakeWallClock clock;
    LoggingService service;
};

using LoggingServiceDeathTest = LoggingServiceTest;

// The end of the process is seen on its standard error: one line, complete.
constexpr const char* kFatalLine =
    "^XPlaneOrvane 2024-3-5 9:7:2 Error@TcpServer::Init : bind\\(\\) : text\n$";

TEST_F(LoggingServiceTest, NumbersItsLevels) {
    EXPECT_EQ(static_cast<int>(LogLevelError), 1);
    EXPECT_EQ(static_cast<int>(LogLevelWarning), 2);
    EXPECT_EQ(static_cast<int>(LogLevelVerbose), 3);
}

TEST_F(LoggingServiceTest, WritesNameDateTimeAndMessageWithoutLeadingZeros) {
    service.Log(LogLevelWarning, "Warning@TcpServer::Init : isInit == true. Skipping init.");
    EXPECT_EQ(text(),
              "XPlaneOrvane 2024-3-5 9:7:2 "
              "Warning@TcpServer::Init : isInit == true. Skipping init.\n");
}

TEST_F(LoggingServiceTest, WritesTwoDigitNumbersInFull) {
    clock.Set(kLastSeconds);
    service.Log(LogLevelWarning, "m");
    EXPECT_EQ(text(), "XPlaneOrvane 2031-12-31 23:59:58 m\n");
}

TEST_F(LoggingServiceTest, WritesZeroHoursAsOneDigit) {
    clock.Set(0);
    service.Log(LogLevelWarning, "m");
    EXPECT_EQ(text(), "XPlaneOrvane 1970-1-1 0:0:0 m\n");
}

TEST_F(LoggingServiceTest, WritesTheLocalTime) {
    setTimeZone("XYZ-16:30"); // Ahead of UTC: already the next day.
    service.Log(LogLevelWarning, "m");
    EXPECT_EQ(text(), "XPlaneOrvane 2024-3-6 1:37:2 m\n");
}

TEST_F(LoggingServiceTest, WritesPlainNumbersWhateverTheGlobalLocale) {
    const std::locale former = std::locale::global(std::locale(std::locale(), new GroupedDigits));
    service.Log(LogLevelWarning, "m");
    std::locale::global(former);
    EXPECT_EQ(text(), "XPlaneOrvane 2024-3-5 9:7:2 m\n");
}

TEST_F(LoggingServiceTest, HandsEachLineToTheSimulatorInOneCall) {
    simulator.Recorder().Enable();
    service.Log(LogLevelWarning, "first");
    service.Log(LogLevelWarning, "second");
    const auto calls = simulator.Recorder().Calls();
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].function, "XPLMDebugString");
    EXPECT_EQ(calls[0].arguments, "XPlaneOrvane 2024-3-5 9:7:2 first\n");
    EXPECT_EQ(calls[1].arguments, "XPlaneOrvane 2024-3-5 9:7:2 second\n");
}

TEST_F(LoggingServiceTest, DropsLevelThreeAtTheThresholdThatItStartsWith) {
    service.Log(LogLevelVerbose, "PluginStart");
    EXPECT_EQ(text(), "");
}

TEST_F(LoggingServiceTest, DropsLevelThreeAtThresholdTwo) {
    service.SetLogLevel(LogLevelVerbose);
    service.SetLogLevel(LogLevelWarning);
    service.Log(LogLevelVerbose, "PluginStart");
    EXPECT_EQ(text(), "");
}

TEST_F(LoggingServiceTest, WritesLevelTwoAtThresholdTwoAndGoesOn) {
    service.Log(LogLevelWarning, "first");
    service.Log(LogLevelWarning, "second");
    EXPECT_THAT(simulator.Log().Lines(), ElementsAre("XPlaneOrvane 2024-3-5 9:7:2 first",
                                                     "XPlaneOrvane 2024-3-5 9:7:2 second"));
}

TEST_F(LoggingServiceTest, WritesLevelsTwoAndThreeAtThresholdThree) {
    service.SetLogLevel(LogLevelVerbose);
    service.Log(LogLevelWarning, "two");
    service.Log(LogLevelVerbose, "three");
    EXPECT_THAT(simulator.Log().Lines(), ElementsAre("XPlaneOrvane 2024-3-5 9:7:2 two",
                                                     "XPlaneOrvane 2024-3-5 9:7:2 three"));
}

TEST_F(LoggingServiceTest, DropsLevelsTwoAndThreeAtThresholdOneAndBelow) {
    for (const int threshold : {1, 0, -1, -1000}) {
        service.SetLogLevel(static_cast<LogLevel>(threshold));
        service.Log(LogLevelWarning, "two");
        service.Log(LogLevelVerbose, "three");
    }
    EXPECT_THAT(simulator.Log().Lines(), IsEmpty());
}

TEST_F(LoggingServiceTest, KnowsWhichLevelsItWrites) {
    EXPECT_TRUE(service.IsEnabled(LogLevelError));
    EXPECT_TRUE(service.IsEnabled(LogLevelWarning));
    EXPECT_FALSE(service.IsEnabled(LogLevelVerbose));
    service.SetLogLevel(LogLevelVerbose);
    EXPECT_TRUE(service.IsEnabled(LogLevelVerbose));
    service.SetLogLevel(static_cast<LogLevel>(-1000));
    EXPECT_TRUE(service.IsEnabled(LogLevelError));
    EXPECT_FALSE(service.IsEnabled(LogLevelWarning));
}

TEST_F(LoggingServiceTest, WritesEveryLevelUnlessItSaysOtherwise) {
    class PlainLogger final : public ILoggingService {
    public:
        void SetLogLevel(LogLevel /*level*/) override {}
        void Log(LogLevel /*level*/, std::string /*message*/) override {}
    };
    EXPECT_TRUE(PlainLogger().IsEnabled(LogLevelVerbose));
}

TEST_F(LoggingServiceTest, ReadsTheClockOnlyForLinesThatAreWritten) {
    service.Log(LogLevelVerbose, "dropped");
    EXPECT_EQ(clock.Reads(), 0);
    service.Log(LogLevelWarning, "written");
    EXPECT_EQ(clock.Reads(), 1);
}

TEST_F(LoggingServiceTest, AddsANewlineToAMessageThatEndsWithOne) {
    service.Log(LogLevelWarning, "m\n");
    EXPECT_EQ(text(), "XPlaneOrvane 2024-3-5 9:7:2 m\n\n");
}

TEST_F(LoggingServiceTest, WritesAnEmptyMessageAsDateTimeAndOneTrailingBlank) {
    service.Log(LogLevelWarning, "");
    EXPECT_EQ(text(), "XPlaneOrvane 2024-3-5 9:7:2 \n");
}

TEST_F(LoggingServiceTest, PassesRawTextToTheSimulatorAsItStands) {
    service.writeToXPlaneLog("no name, no time, no newline");
    EXPECT_EQ(text(), "no name, no time, no newline");
}

TEST_F(LoggingServiceDeathTest, WritesLevelOneAndAbortsAtTheThresholdThatItStartsWith) {
    const auto log = [this] {
        simulator.Log().EchoToStderr(true);
        service.Log(LogLevelError, "Error@TcpServer::Init : bind() : text");
    };
    EXPECT_EXIT(log(), KilledBySignal(SIGABRT), kFatalLine);
}

TEST_F(LoggingServiceDeathTest, WritesLevelOneAndAbortsAtThresholdThree) {
    EXPECT_EXIT(logAtLevelOne(LogLevelVerbose), KilledBySignal(SIGABRT), kFatalLine);
}

TEST_F(LoggingServiceDeathTest, WritesLevelOneAndAbortsAtThresholdZero) {
    EXPECT_EXIT(logAtLevelOne(static_cast<LogLevel>(0)), KilledBySignal(SIGABRT), kFatalLine);
}

TEST_F(LoggingServiceDeathTest, WritesLevelOneAndAbortsAtANegativeThreshold) {
    EXPECT_EXIT(logAtLevelOne(static_cast<LogLevel>(-7)), KilledBySignal(SIGABRT), kFatalLine);
}

} // namespace
