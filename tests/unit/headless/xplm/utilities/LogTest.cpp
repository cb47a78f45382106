#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/xplm/utilities/Log.h"
#include "support/TemporaryDirectory.h"
#include "support/TextOf.h"

using headless::Log;

TEST(LogTest, KeepsTextAsItStands) {
    Log log;
    log.Write("one");
    log.Write(" line\ntwo\n");
    EXPECT_EQ(log.Text(), "one line\ntwo\n");
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"one line", "two"}));
}

TEST(LogTest, ALineWithoutItsNewlineCounts) {
    Log log;
    log.Write("one\n\ntw");
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{"one", "", "tw"}));
}

TEST(LogTest, TheFileHasEachTextAtOnce) {
    const TemporaryDirectory folder;
    Log log;
    log.OpenFile(folder.Path("Log.txt"));
    log.Write("one\n");
    EXPECT_EQ(folder.Read("Log.txt"), "one\n");
    log.Write("two\n");
    EXPECT_EQ(folder.Read("Log.txt"), "one\ntwo\n");
}

TEST(LogTest, AnOldFileIsEmptied) {
    const TemporaryDirectory folder;
    folder.Write("Log.txt", "from the last flight\n");
    Log log;
    log.OpenFile(folder.Path("Log.txt"));
    EXPECT_EQ(folder.Read("Log.txt"), "");
}

TEST(LogTest, AFileThatCannotBeWrittenIsReportedInOneLine) {
    const TemporaryDirectory folder;
    Log log;
    EXPECT_EQ(textOf<std::runtime_error>([&] { log.OpenFile(folder.Path("none/Log.txt")); }),
              folder.Path("none/Log.txt") + ": cannot write the log: No such file or directory");
}

TEST(LogTest, TextIsNotKeptInMemoryWhenToldSo) {
    const TemporaryDirectory folder;
    Log log;
    log.OpenFile(folder.Path("Log.txt"));
    log.KeepInMemory(false);
    log.Write("one\n");
    EXPECT_EQ(log.Text(), "");
    EXPECT_EQ(folder.Read("Log.txt"), "one\n");
}

TEST(LogTest, KnowsTheLastLineAlsoWhenNothingIsKept) {
    Log log;
    log.KeepInMemory(false);
    EXPECT_EQ(log.LastLine(), "");
    log.Write("one\ntw");
    EXPECT_EQ(log.LastLine(), "tw");
    log.Write("o\n");
    EXPECT_EQ(log.LastLine(), "two");
    log.Write(std::string(5000, 'x') + "end\n");
    EXPECT_TRUE(log.LastLine().ends_with("xxend"));
}

TEST(LogTest, EchoesToStandardErrorWhenToldSo) {
    Log log;
    ::testing::internal::CaptureStderr();
    log.Write("quiet\n");
    log.EchoToStderr(true);
    log.Write("loud\n");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "loud\n");
}
