#include <unistd.h>

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "headless/host/LineReader.h"

using headless::LineReader;

class LineReaderTest : public ::testing::Test {
protected:
    LineReaderTest() {
        if (::pipe(ends) != 0) {
            throw std::runtime_error("no pipe");
        }
    }
    ~LineReaderTest() override {
        ::close(ends[0]);
        closeWriter();
    }

    void write(const std::string& text) {
        ASSERT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void closeWriter() {
        if (ends[1] >= 0) {
            ::close(ends[1]);
            ends[1] = -1;
        }
    }

    int ends[2] = {-1, -1};
};

TEST_F(LineReaderTest, DoesNotWaitWhenThereIsNothing) {
    LineReader reader(ends[0]);
    reader.Fill();
    EXPECT_EQ(reader.Next(), std::nullopt);
    EXPECT_FALSE(reader.AtEnd());
}

TEST_F(LineReaderTest, GivesWholeLinesAndKeepsAPartialOne) {
    LineReader reader(ends[0]);
    write("one\ntwo\r\nthr");
    reader.Fill();
    EXPECT_EQ(reader.Next(), "one");
    EXPECT_EQ(reader.Next(), "two");
    EXPECT_EQ(reader.Next(), std::nullopt);
    write("ee\n\n");
    reader.Fill();
    EXPECT_EQ(reader.Next(), "three");
    EXPECT_EQ(reader.Next(), "");
    EXPECT_EQ(reader.Next(), std::nullopt);
}

TEST_F(LineReaderTest, ALastLineWithoutNewlineCountsAtTheEnd) {
    LineReader reader(ends[0]);
    write("one\nlast");
    closeWriter();
    reader.Fill();
    EXPECT_EQ(reader.Next(), "one");
    EXPECT_FALSE(reader.AtEnd());
    EXPECT_EQ(reader.Next(), "last");
    EXPECT_EQ(reader.Next(), std::nullopt);
    EXPECT_TRUE(reader.AtEnd());
}

TEST_F(LineReaderTest, TakesAllThatIsThereAtOnce) {
    LineReader reader(ends[0]);
    const std::string line(1000, 'x');
    for (int i = 0; i < 20; ++i) {
        write(line + "\n");
    }
    reader.Fill();
    int lines = 0;
    while (reader.Next() == line) {
        ++lines;
    }
    EXPECT_EQ(lines, 20);
}

TEST_F(LineReaderTest, AClosedDescriptorIsTheEnd) {
    const int closed = ::dup(ends[0]);
    ::close(closed);
    LineReader reader(closed);
    reader.Fill();
    EXPECT_TRUE(reader.AtEnd());
}
