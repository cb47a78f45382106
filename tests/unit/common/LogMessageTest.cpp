#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/LogMessage.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(LogMessageTest, JoinsTextsAndNumbers) {
    const std::uint32_t count = 12;
    EXPECT_EQ(logMessage({"Verbose@Class::operation : numBytes (", count, ") < size(", 20, ")"}),
              "Verbose@Class::operation : numBytes (12) < size(20)");
}

TEST(LogMessageTest, WritesNumbersInPlainDecimal) {
    EXPECT_EQ(logMessage({std::numeric_limits<std::uint64_t>::max()}), "18446744073709551615");
    EXPECT_EQ(logMessage({std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808");
    EXPECT_EQ(logMessage({std::uint32_t{0xDDEEFFC0}}), "3723427776");
    EXPECT_EQ(logMessage({0}), "0");
}

TEST(LogMessageTest, IsEmptyWithoutPieces) {
    EXPECT_EQ(logMessage({}), "");
    EXPECT_EQ(logMessage({""}), "");
}

// Writes one level only.
class OneLevelLogger final : public ILoggingService {
public:
    explicit OneLevelLogger(LogLevel level) : enabled(level) {}

    void SetLogLevel(LogLevel /*level*/) override {}
    void Log(LogLevel level, std::string message) override {
        messages.emplace_back(level, message);
    }
    bool IsEnabled(LogLevel level) const override { return level == enabled; }

    std::vector<std::pair<LogLevel, std::string>> messages;

private:
    LogLevel enabled;
};

TEST(LogIfEnabledTest, LogsThePiecesInARow) {
    OneLevelLogger logger(LogLevelVerbose);
    logIfEnabled(&logger, LogLevelVerbose, "Verbose@Class::operation : ", 12UL, " bytes");
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelVerbose, "Verbose@Class::operation : 12 bytes")));
}

TEST(LogIfEnabledTest, DoesNothingAtALevelThatIsNotWritten) {
    OneLevelLogger logger(LogLevelWarning);
    logIfEnabled(&logger, LogLevelVerbose, "Verbose@Class::operation : ", 12UL, " bytes");
    EXPECT_THAT(logger.messages, IsEmpty());
}

} // namespace
