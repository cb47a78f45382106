#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "headless/scenario/Statement.h"
#include "support/TextOf.h"

using headless::readStatement;
using headless::Statement;
using headless::statementKinds;
using headless::withoutComment;

namespace {

std::string errorOf(const std::string& line) {
    return textOf<std::invalid_argument>([&] { readStatement(line); });
}

} // namespace

TEST(StatementTest, ReadsEveryStatement) {
    for (const char* line : {"get sim/a",
                             "set sim/a 1",
                             "set sim/a 1,2,3",
                             "set sim/a",
                             "set sim/a[3] 1",
                             "expect sim/a == 1",
                             "expect sim/a != 1 within 0.5",
                             "expect sim/a <= 1 for 2s",
                             "expect sim/a == \"some text\"",
                             "expect sim/a == 1 within 0.5 for 500ms",
                             "press a/b",
                             "begin a/b",
                             "end a/b",
                             "command once a/b",
                             "command begin a/b",
                             "command end a/b",
                             "events a/b",
                             "handlers",
                             "click Menu > Item",
                             "aircraft load \"A text\"",
                             "aircraft load A text",
                             "aircraft unload",
                             "message 103 0",
                             "wait 2s",
                             "wait 1min",
                             "wait up to 10s until sim/a > 5",
                             "frames",
                             "frames 10",
                             "step 10",
                             "pause",
                             "resume",
                             "run",
                             "rate 30",
                             "rate 0.5",
                             "reload",
                             "reload Some Plugin",
                             "disable",
                             "enable a.plugin",
                             "stop",
                             "start",
                             "log expect some text",
                             "worst",
                             "rss",
                             "fds",
                             "help",
                             "help set",
                             "quit",
                             "quit 7",
                             "  quit\t7  "}) {
        EXPECT_EQ(errorOf(line), "") << line;
    }
}

TEST(StatementTest, SaysWhatIsWrongWithAStatement) {
    EXPECT_EQ(errorOf("fly"), "unknown statement \"fly\"; see help");
    EXPECT_EQ(errorOf(""), "unknown statement \"\"; see help");
    EXPECT_EQ(errorOf("get"), "the dataref is missing");
    EXPECT_EQ(errorOf("get \"sim/a\" sim/b"), "unexpected \"sim/b\"");
    EXPECT_EQ(errorOf("expect sim/a"), "a comparison such as == is missing");
    EXPECT_EQ(errorOf("expect sim/a = 1"), "\"=\" is not one of == != < <= > >=");
    EXPECT_EQ(errorOf("expect sim/a =="), "the value is missing");
    EXPECT_EQ(errorOf("expect sim/a == for 2s"), "the value is missing");
    EXPECT_EQ(errorOf("expect sim/a == 1 within"), "the tolerance is missing");
    EXPECT_EQ(errorOf("expect sim/a == 1 within x"), "\"x\" is not a number that fits here");
    EXPECT_EQ(errorOf("expect sim/a == 1 within -1"), "a tolerance is 0 or more");
    EXPECT_EQ(errorOf("expect sim/a < 1 within 1"), "\"within\" goes with == and != only");
    EXPECT_EQ(errorOf("expect sim/a == 1 for 2"), "\"2\" is not a time such as 2s, 500ms or 1min");
    EXPECT_EQ(errorOf("expect sim/a == 1 for 2s now"), "unexpected \"now\"");
    EXPECT_EQ(errorOf("press"), "the command is missing");
    EXPECT_EQ(errorOf("command twice a/b"), "a command is run once, begun or ended, not \"twice\"");
    EXPECT_EQ(errorOf("click"), "the menu item is missing");
    EXPECT_EQ(errorOf("aircraft crash"), "an aircraft is loaded or unloaded, not \"crash\"");
    EXPECT_EQ(errorOf("aircraft load \"open"), "the quotes around the text are not closed");
    EXPECT_EQ(errorOf("message 103"), "the message's parameter is missing");
    EXPECT_EQ(errorOf("message x 0"), "\"x\" is not a number that fits here");
    EXPECT_EQ(errorOf("wait"), "a time such as 2s is missing");
    EXPECT_EQ(errorOf("wait -1s"), "\"-1s\" is not a time such as 2s, 500ms or 1min");
    EXPECT_EQ(errorOf("wait up to 10s sim/a == 1"),
              "the form is \"wait up to 10s until NAME == VALUE\"");
    EXPECT_EQ(errorOf("frames -1"), "the number of frames is negative");
    EXPECT_EQ(errorOf("step"), "the number of frames is missing");
    EXPECT_EQ(errorOf("pause now"), "unexpected \"now\"");
    EXPECT_EQ(errorOf("rate 0"), "a rate is 0.1 to 100000 frames per second");
    EXPECT_EQ(errorOf("log text"), "the form is \"log expect TEXT\"");
    EXPECT_EQ(errorOf("log expect"), "the text is missing");
    EXPECT_EQ(errorOf("quit -1"), "an exit status is 0 to 255");
}

TEST(StatementTest, ACommentBeginsTheLineOrFollowsABlank) {
    EXPECT_EQ(withoutComment("# all of it"), "");
    EXPECT_EQ(withoutComment("  pause  # now"), "pause");
    EXPECT_EQ(withoutComment("get my/number#1"), "get my/number#1");
    EXPECT_EQ(withoutComment("aircraft load \"No. # 1\" # one"), "aircraft load \"No. # 1\"");
    EXPECT_EQ(withoutComment(R"(log expect "a \" # b" # c)"), R"(log expect "a \" # b")");
}

TEST(StatementTest, KnowsWhatIsForActingTellingAndChecking) {
    EXPECT_EQ(readStatement("set sim/a 1").purpose, Statement::Purpose::Act);
    EXPECT_EQ(readStatement("frames 1").purpose, Statement::Purpose::Act);
    EXPECT_EQ(readStatement("frames").purpose, Statement::Purpose::Report);
    EXPECT_EQ(readStatement("get sim/a").purpose, Statement::Purpose::Report);
    EXPECT_EQ(readStatement("expect sim/a == 1").purpose, Statement::Purpose::Check);
    EXPECT_EQ(readStatement("wait 1s").purpose, Statement::Purpose::Act);
    EXPECT_EQ(readStatement("wait up to 1s until sim/a == 1").purpose, Statement::Purpose::Check);
    EXPECT_EQ(readStatement("log expect x").purpose, Statement::Purpose::Check);
}

TEST(StatementTest, UsageBeginsWithTheWord) {
    for (const auto& kind : statementKinds()) {
        EXPECT_TRUE(std::string(kind.usage).starts_with(kind.word)) << kind.word;
    }
}
