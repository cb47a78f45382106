#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "tools/orvane/files/Output.h"
#include "tools/orvane/terminal/LiveScreen.h"

using orvane::tool::LiveScreen;
using orvane::tool::Terminal;
using std::chrono::milliseconds;

namespace {

// Standard output is a pipe.
class LiveScreenTest : public testing::Test {
protected:
    LiveScreenTest() {
        EXPECT_EQ(::pipe2(pipe, O_NONBLOCK), 0);
        std::fflush(stdout);
        realOutput = ::dup(STDOUT_FILENO);
        ::dup2(pipe[1], STDOUT_FILENO);
    }

    ~LiveScreenTest() override {
        ::dup2(realOutput, STDOUT_FILENO);
        for (const int descriptor : {pipe[0], pipe[1], realOutput}) {
            ::close(descriptor);
        }
    }

    std::string written() const {
        std::string text(4096, '\0');
        const ssize_t count = ::read(pipe[0], text.data(), text.size());
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }

    int pipe[2] = {-1, -1};
    int realOutput = -1;
    const Terminal terminal{STDOUT_FILENO};
    const LiveScreen::TimePoint start;
    LiveScreen screen{terminal};
};

TEST_F(LiveScreenTest, IsDueAtMostTwentyTimesASecond) {
    int drawings = 0;
    for (int ms = 0; ms < 10'000; ++ms) {
        if (screen.IsDue(start + milliseconds(ms))) {
            screen.Draw({"line"}, start + milliseconds(ms));
            written();
            ++drawings;
        }
    }
    EXPECT_EQ(drawings, 200);
}

TEST_F(LiveScreenTest, DrawsOverTheLastDrawing) {
    screen.Draw({"one", "two"}, start);
    EXPECT_EQ(written(), "\rone\x1b[K\ntwo\x1b[K\n\x1b[J");
    screen.Draw({"three"}, start);
    EXPECT_EQ(written(), "\x1b[2A\rthree\x1b[K\n\x1b[J");
}

TEST_F(LiveScreenTest, KeepsMessagesPrintedMeanwhile) {
    screen.Draw({"one", "two"}, start);
    written();
    testing::internal::CaptureStderr();
    orvane::tool::tell("the simulator is gone");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "orvane: the simulator is gone\n");
    screen.Draw({"one", "two"}, start);
    EXPECT_EQ(written(), "\rone\x1b[K\ntwo\x1b[K\n\x1b[J");
    screen.Draw({"one", "two"}, start);
    EXPECT_EQ(written(), "\x1b[2A\rone\x1b[K\ntwo\x1b[K\n\x1b[J");
}

} // namespace
