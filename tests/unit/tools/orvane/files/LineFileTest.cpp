#include <sys/resource.h>

#include <csignal>
#include <string>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/files/LineFile.h"

namespace {

using orvane::tool::Failure;
using orvane::tool::LineFile;

TEST(LineFileTest, WritesEachLineAtOnce) {
    const TemporaryDirectory directory;
    LineFile file("f.csv", LineFile::Existing::Keep);
    file.Append("one");
    EXPECT_EQ(directory.Read("f.csv"), "one\n");
    file.Append("two");
    EXPECT_EQ(directory.Read("f.csv"), "one\ntwo\n");
    EXPECT_EQ(file.Bytes(), 8U);
}

TEST(LineFileTest, KeepsAnExistingFileUnlessForced) {
    const TemporaryDirectory directory;
    directory.Write("f.csv", "precious\n");
    try {
        const LineFile file("f.csv", LineFile::Existing::Keep);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "f.csv: File exists (--force overwrites it)");
    }
    EXPECT_EQ(directory.Read("f.csv"), "precious\n");
    const LineFile file("f.csv", LineFile::Existing::Overwrite);
    EXPECT_EQ(directory.Read("f.csv"), "");
}

TEST(LineFileTest, TakesBackALineThatDoesNotFit) {
    const TemporaryDirectory directory;
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit tight{10, former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    LineFile file("f.csv", LineFile::Existing::Keep);
    file.Append("12345");
    EXPECT_THROW(file.Append("1234567"), Failure);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &former), 0);
    EXPECT_EQ(directory.Read("f.csv"), "12345\n");
}

} // namespace
