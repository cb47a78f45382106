#include <unistd.h>

#include <array>
#include <csignal>
#include <deque>

#include <gtest/gtest.h>

#include "e2e/ToolRun.h"
#include "support/Bytes.h"
#include "support/LoopbackListener.h"
#include "support/Sockets.h"

namespace {

using Arguments = std::vector<std::string>;

// Each subcommand that needs a server.
const std::vector<Arguments> kCommands{
    {"info"},
    {"get", "test/int"},
    {"set", "test/int=1"},
    {"watch", "test/int"},
    {"command", "once", "test/once"},
    {"command", "begin", "test/once"},
    {"command", "end", "test/once"},
    {"command", "hold", "test/once"},
    {"command", "observe", "test/once"},
    {"latency"},
};

// Reads until the client closes.
void readToTheEnd(int connection) {
    std::array<char, 256> bytes{};
    while (waitReadable(connection) && ::read(connection, bytes.data(), bytes.size()) > 0) {
    }
}

class BadServerTest : public testing::Test {
protected:
    Arguments against(const Arguments& command) const {
        Arguments arguments{"--port", std::to_string(listener.Port()), "--timeout", "0.3"};
        arguments.insert(arguments.end(), command.begin(), command.end());
        return arguments;
    }

    // Runs a command while `serve` plays a bad server.
    template <typename Serve>
    void expectExit(const Arguments& command, int exitCode, Serve serve) {
        ToolRun run(against(command));
        serve();
        expectFailure(run, command, exitCode);
    }

    void expectFailure(ToolRun& run, const Arguments& command, int exitCode) const {
        const ToolResult result = run.Wait();
        EXPECT_EQ(result.exitCode, exitCode) << command[0] << ": " << result.err;
        EXPECT_EQ(result.out, "") << command[0];
        EXPECT_TRUE(result.err.starts_with("orvane: 127.0.0.1:" + std::to_string(listener.Port())))
            << command[0] << ": " << result.err;
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << command[0] << ": " << result.err;
    }

    LoopbackListener listener{0, static_cast<int>(kCommands.size())};
};

TEST_F(BadServerTest, NobodyListens) {
    for (const Arguments& command : kCommands) {
        const ToolResult result = runTool(command);
        EXPECT_EQ(result.exitCode, 2) << command[0] << ": " << result.err;
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.err.starts_with("orvane: 127.0.0.1:48000: ")) << result.err;
    }
}

TEST_F(BadServerTest, TheHostIsUnknown) {
    const ToolResult result = runTool({"info", "--host", "no-such-host.invalid"});
    EXPECT_EQ(result.exitCode, 2) << result.err;
    EXPECT_TRUE(result.err.starts_with("orvane: no-such-host.invalid:48000: ")) << result.err;
}

TEST_F(BadServerTest, TheHostIsUnreachable) {
    const ToolResult result = runTool({"info", "--host", "192.0.2.1", "--timeout", "0.5"});
    EXPECT_TRUE(result.exitCode == 2 || result.exitCode == 4) << result.err;
    EXPECT_TRUE(result.err.starts_with("orvane: 192.0.2.1:48000: ")) << result.err;
}

TEST_F(BadServerTest, ItNeverAnswers) {
    std::deque<ToolRun> runs;
    for (const Arguments& command : kCommands) {
        runs.emplace_back(against(command));
    }
    for (std::size_t i = 0; i < runs.size(); ++i) {
        expectFailure(runs[i], kCommands[i], 4);
    }
}

TEST_F(BadServerTest, ItNeverAnswersUntilAnInterrupt) {
    ToolRun run(
        {"--port", std::to_string(listener.Port()), "--timeout", "1000", "get", "test/int"});
    const int connection = listener.Accept();
    EXPECT_TRUE(waitReadable(connection));
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    ::close(connection);
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_EQ(result.err, "orvane: interrupted before the answer came\n");
}

TEST_F(BadServerTest, ItClosesTheConnection) {
    for (const Arguments& command : kCommands) {
        expectExit(command, 2, [&] {
            const int connection = listener.Accept();
            waitReadable(connection);
            ::close(connection);
        });
    }
}

TEST_F(BadServerTest, ItSendsSomethingUnexpected) {
    for (const Arguments& command : kCommands) {
        // The client tries twice.
        expectExit(command, 5, [&] {
            for (int i = 0; i < 2; ++i) {
                const int connection = listener.Accept();
                EXPECT_TRUE(waitReadable(connection));
                EXPECT_EQ(::write(connection, "\x05\0\0\0HELLO", 9), 9);
                readToTheEnd(connection);
                ::close(connection);
            }
        });
    }
}

} // namespace
