#include <unistd.h>

#include <cstdlib>

#include <gtest/gtest.h>

#include "support/PseudoTerminal.h"
#include "tools/orvane/terminal/Terminal.h"

using orvane::tool::Terminal;

namespace {

class TerminalTest : public testing::Test {
protected:
    TerminalTest() {
        EXPECT_EQ(::pipe(pipe), 0);
        terminal.Resize(120, 40);
        ::unsetenv("NO_COLOR");
    }

    ~TerminalTest() override {
        for (const int descriptor : {pipe[0], pipe[1]}) {
            ::close(descriptor);
        }
    }

    const PseudoTerminal terminal;
    const int theirs = terminal.FileDescriptor();
    int pipe[2] = {-1, -1};
};

TEST_F(TerminalTest, IsNotATerminalWithoutCursorControl) {
    EXPECT_TRUE(Terminal(theirs).IsTerminal());
    EXPECT_FALSE(Terminal(pipe[1]).IsTerminal());
    ::setenv("TERM", "dumb", 1);
    EXPECT_FALSE(Terminal(theirs).IsTerminal());
    ::unsetenv("TERM");
    EXPECT_FALSE(Terminal(theirs).IsTerminal());
}

TEST_F(TerminalTest, ColoursUnlessNoColorIsSet) {
    EXPECT_EQ(Terminal(theirs).Bold("x"), "\x1b[1mx\x1b[0m");
    EXPECT_EQ(Terminal(pipe[1]).Bold("x"), "x");
    ::setenv("NO_COLOR", "", 1);
    EXPECT_EQ(Terminal(theirs).Bold("a"), "\x1b[1ma\x1b[0m");
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(Terminal(theirs).Bold("a"), "a");
    EXPECT_EQ(Terminal(theirs).Bold("x"), "x");
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
