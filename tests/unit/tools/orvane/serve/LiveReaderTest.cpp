#include <unistd.h>

#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/LoopbackListener.h"
#include "support/TcpPeer.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/serve/LiveReader.h"

namespace {

using namespace orvane::tool;

const std::string kPage(16, 'p');

// Names have one letter.
std::size_t registerSize(std::size_t names) {
    return 4 + names * 18;
}

std::size_t readSize(std::size_t names) {
    return 4 + names * 8;
}

Bytes take(TcpPeer& client, std::size_t request) {
    const Bytes bytes = client.Await(request);
    if (bytes.size() != request) {
        ::_exit(1);
    }
    return bytes;
}

void answer(TcpPeer& client, std::size_t request, const std::string& reply) {
    take(client, request);
    client.Send(fromHex(reply));
}

Bytes takeUnregister(TcpPeer& client) {
    constexpr std::size_t kSize = 12;
    return take(client, kSize);
}

// Whichever dataref it is.
void answerUnregister(TcpPeer& client) {
    const Bytes request = takeUnregister(client);
    client.Send(join({u32(12), u32(2), Bytes(request.begin() + 8, request.end()), u32(1)}));
}

class LiveReaderTest : public testing::Test {
protected:
    void want(const std::vector<std::string>& names) {
        hub.Want({kPage, parseDatarefArguments(names), {}});
    }

    // Only an interrupt ends a reader, so it has a process of its own, and the server, too.
    int read(const std::function<void()>& serve) {
        ChildProcess process([&] {
            catchInterrupts();
            const std::jthread server([&] {
                serve();
                ::kill(::getpid(), SIGTERM);
            });
            LiveReader(globals(), hub).Run();
        });
        return process.WaitForEnd();
    }

    TcpPeer accept() const { return TcpPeer(AcceptedSocket{listener.Accept()}); }

    Hub hub;
    const std::shared_ptr<EventStream> page = hub.Open(kPage);

private:
    GlobalOptions globals() const {
        GlobalOptions options;
        options.port = listener.Port();
        options.timeoutSeconds = 20;
        return options;
    }

    const LoopbackListener listener;
};

TEST_F(LiveReaderTest, GoesOnIfTheConnectionIsLostWhileNamesAreDropped) {
    want({"a:int", "b:int"});
    EXPECT_EQ(
        read([this] {
            TcpPeer first = accept();
            answer(first, registerSize(2),
                   "18 00 00 00"
                   "01 00 00 00 01 00 00 00 01 00 00 00"
                   "01 00 00 00 02 00 00 00 01 00 00 00");
            take(first, readSize(2));
            want({"c:int"});
            first.Send(
                fromHex("28 00 00 00"
                        "05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 07 00 00 00"
                        "05 00 00 00 02 00 00 00 01 00 00 00 04 00 00 00 08 00 00 00"));
            answerUnregister(first);
            takeUnregister(first);
            first.Close();
            TcpPeer second = accept();
            answer(second, registerSize(1), "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00");
            answerUnregister(second);
            answer(second, registerSize(1), "0C 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00");
            take(second, readSize(1));
        }),
        0);
}

TEST_F(LiveReaderTest, GoesOnIfADatarefIsGoneWhenItsTypeIsSought) {
    want({"a"});
    EXPECT_EQ(read([this] {
                  TcpPeer client = accept();
                  answer(client, registerSize(1),
                         "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00");
                  answer(client, readSize(1),
                         "14 00 00 00 05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 00 00 00 00");
                  answer(client, registerSize(1),
                         "10 00 00 00 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00");
                  answerUnregister(client);
                  answer(client, registerSize(1),
                         "10 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00 01 00 00 00");
                  constexpr std::size_t kPollSize = 8;
                  take(client, kPollSize);
              }),
              0);
}

} // namespace
