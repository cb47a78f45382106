#include "tools/orvane/terminal/Terminal.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

#include <cstdlib>

using orvane::tool::Terminal;

namespace {

class TerminalTest : public testing::Test {
protected:
    TerminalTest() {
        winsize size{};
        size.ws_col = 120;
        size.ws_row = 40;
        EXPECT_EQ(::openpty(&ours, &theirs, nullptr, nullptr, &size), 0);
        EXPECT_EQ(::pipe(pipe), 0);
        for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG", "NO_COLOR"}) {
            ::unsetenv(name);
        }
        ::setenv("TERM", "xterm", 1);
    }

    ~TerminalTest() override {
        for (const int descriptor : {ours, theirs, pipe[0], pipe[1]}) {
            ::close(descriptor);
        }
    }

    int ours = -1;
    int theirs = -1;
    int pipe[2] = {-1, -1};
};

TEST_F(TerminalTest, IsNoneWhereNobodyCouldMoveACursor) {
    EXPECT_TRUE(Terminal(theirs).IsTerminal());
    EXPECT_FALSE(Terminal(pipe[1]).IsTerminal());
    ::setenv("TERM", "dumb", 1);
    EXPECT_FALSE(Terminal(theirs).IsTerminal());
    ::unsetenv("TERM");
    EXPECT_FALSE(Terminal(theirs).IsTerminal());
}

TEST_F(TerminalTest, ColoursUnlessToldOtherwise) {
    EXPECT_EQ(Terminal(theirs).Bold("x"), "\x1b[1mx\x1b[0m");
    EXPECT_EQ(Terminal(theirs).Dim("x"), "\x1b[2mx\x1b[0m");
    EXPECT_EQ(Terminal(pipe[1]).Bold("x"), "x");
    ::setenv("NO_COLOR", "", 1);
    EXPECT_TRUE(Terminal(theirs).MayColour());
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_FALSE(Terminal(theirs).MayColour());
    EXPECT_EQ(Terminal(theirs).Bold("x"), "x");
    EXPECT_EQ(Terminal(theirs).Dim("x"), "x");
}

TEST_F(TerminalTest, KnowsItsSize) {
    EXPECT_EQ(Terminal(theirs).Columns(), 120U);
    EXPECT_EQ(Terminal(theirs).Rows(), 40U);
    EXPECT_EQ(Terminal(pipe[1]).Columns(), 80U);
    EXPECT_EQ(Terminal(pipe[1]).Rows(), 24U);
}

TEST_F(TerminalTest, TakesTheFirstVariableOfTheLocaleThatIsSet) {
    EXPECT_FALSE(Terminal(theirs).KnowsUnicode());
    ::setenv("LANG", "de_AT.UTF-8", 1);
    EXPECT_TRUE(Terminal(theirs).KnowsUnicode());
    ::setenv("LC_CTYPE", "C.utf8", 1);
    EXPECT_TRUE(Terminal(theirs).KnowsUnicode());
    ::setenv("LC_ALL", "C", 1);
    EXPECT_FALSE(Terminal(theirs).KnowsUnicode());
}

} // namespace
