// Nothing that the client library does grows faster than linearly with what is declared.
//
// Counted are the basic blocks of the library that run, look-ups included, and the memory that it
// takes. Neither depends on the machine.

#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvane/tarnel/Client.h"
#include "steady/AllocationCounter.h"
#include "steady/Growth.h"
#include "steady/StepCounter.h"
#include "support/Bytes.h"
#include "support/LoopbackListener.h"
#include "support/Sockets.h"

namespace {

using namespace orvane::tarnel;

const std::vector<int> kSizes = {100, 300, 1000, 3000, 10'000};
constexpr double kLinear = 1.1;

// Answers requests of known lengths on one connection, in a thread of its own.
class AnsweringServer final {
public:
    struct Turn {
        std::size_t request = 0;
        Bytes answer;
    };

    explicit AnsweringServer(std::vector<Turn> turns)
        : thread([this, script = std::move(turns)] { play(script); }) {}
    ~AnsweringServer() { thread.join(); }

    orvane::Options Options() const {
        orvane::Options options;
        options.port = listener.Port();
        options.timeout = std::chrono::milliseconds(20'000);
        return options;
    }

private:
    void play(const std::vector<Turn>& turns) const {
        const int socket = listener.Accept();
        for (const Turn& turn : turns) {
            receive(socket, turn.request);
            send(socket, turn.answer);
        }
        waitReadable(socket); // the client's end
        ::close(socket);
    }

    static void receive(int socket, std::size_t size) {
        Bytes bytes(size);
        for (std::size_t received = 0; received < size;) {
            ASSERT_TRUE(waitReadable(socket)) << received << " of " << size << " bytes came";
            const ssize_t result = ::recv(socket, bytes.data(), size - received, 0);
            ASSERT_GT(result, 0);
            received += static_cast<std::size_t>(result);
        }
    }

    static void send(int socket, const Bytes& answer) {
        for (std::size_t sent = 0; sent < answer.size();) {
            const ssize_t result =
                ::send(socket, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
            sent += result > 0 ? static_cast<std::size_t>(result) : 0;
        }
    }

    LoopbackListener listener;
    std::thread thread;
};

struct Work {
    double steps = 0;
    double allocations = 0;
    double allocatedBytes = 0;
};

Work workOf(const std::function<void()>& step) {
    const std::size_t before = stepsSoFar();
    const Allocations taken = Allocations::Of(step);
    return {static_cast<double>(stepsSoFar() - before), static_cast<double>(taken.count),
            static_cast<double>(taken.bytes)};
}

void expectLinear(const std::function<Work(int size)>& workAt) {
    std::vector<double> steps;
    std::vector<double> allocations;
    std::vector<double> allocatedBytes;
    for (const int size : kSizes) {
        const Work work = workAt(size);
        steps.push_back(work.steps);
        allocations.push_back(work.allocations);
        allocatedBytes.push_back(work.allocatedBytes);
    }
    // Otherwise the work was not done, or the library was not compiled to count it.
    EXPECT_GE(steps.back(), kSizes.back());
    EXPECT_LE(exponentOf(kSizes, steps), kLinear);
    EXPECT_LE(exponentOf(kSizes, allocations), kLinear);
    EXPECT_LE(exponentOf(kSizes, allocatedBytes), kLinear);
}

std::string numbered(const char* prefix, int number) {
    return prefix + std::to_string(number);
}

// As many inputs as outputs; half of each are commands.
Definitions definitionsOf(int size) {
    Definitions definitions;
    for (int i = 0; i < size; ++i) {
        const auto id = static_cast<OutputId>(i);
        definitions.add(Input::toInt(i, numbered("sim/int/", i)));
        definitions.add(i % 2 == 0 ? Output::ofFloat(id, numbered("sim/float/", i))
                                   : Output::ofCommand(id, numbered("kyr/command/", i)));
    }
    return definitions;
}

std::vector<Item> itemsOf(int size) {
    std::vector<Item> items;
    for (int i = 0; i < size; ++i) {
        items.push_back({i, 1});
    }
    return items;
}

Bytes answerOf(int size) {
    Bytes answer;
    const auto append = [&answer](const Bytes& bytes) {
        answer.insert(answer.end(), bytes.begin(), bytes.end());
    };
    for (int i = 0; i < size; ++i) {
        append(i32(i));
        append(i % 2 == 0 ? join({u32(4), f32(0.5F)}) : join({u32(1), {1}}));
    }
    append(join({u32(0xFFFF), u32(4), u32(7)}));
    return join({u32(static_cast<std::uint32_t>(answer.size())), answer});
}

AnsweringServer::Turn defining(int size) {
    return {24 + static_cast<std::size_t>(size) * (488 + 116), answerOf(size)};
}

AnsweringServer::Turn exchanging(int size) {
    return {16 + static_cast<std::size_t>(size) * 8, answerOf(size)};
}

TEST(ClientGrowthTest, OfAddingIsLinearInWhatIsThere) {
    expectLinear([](int size) { return workOf([&] { definitionsOf(size); }); });
}

TEST(ClientGrowthTest, OfDefiningIsLinearInInputsAndOutputs) {
    expectLinear([](int size) {
        const AnsweringServer server({defining(size)});
        Client client(server.Options());
        const Definitions definitions = definitionsOf(size);
        return workOf([&] { client.define(definitions); });
    });
}

TEST(ClientGrowthTest, OfDefiningAgainIsLinearInInputsAndOutputs) {
    expectLinear([](int size) {
        const AnsweringServer server({defining(size), defining(size)});
        Client client(server.Options());
        const Definitions definitions = definitionsOf(size);
        client.define(definitions);
        return workOf([&] { client.define(definitions); });
    });
}

TEST(ClientGrowthTest, OfExchangingIsLinearInItemsAndOutputs) {
    expectLinear([](int size) {
        const AnsweringServer server({defining(size), exchanging(size)});
        Client client(server.Options());
        client.define(definitionsOf(size));
        const std::vector<Item> items = itemsOf(size);
        return workOf([&] { client.exchange(items); });
    });
}

TEST(ClientGrowthTest, OfLookingUpEveryValueIsLinearInOutputs) {
    expectLinear([](int size) {
        const AnsweringServer server({defining(size)});
        Client client(server.Options());
        const Answer answer = client.define(definitionsOf(size));
        return workOf([&] {
            for (int i = 0; i < size; ++i) {
                answer.at(static_cast<OutputId>(i));
            }
        });
    });
}

} // namespace
