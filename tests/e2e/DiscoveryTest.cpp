#include <future>

#include "e2e/HeardSimulatorTest.h"
#include "orvane/Discovery.h"
#include "orvane/velmar/Client.h"

namespace {

using namespace orvane;

TEST_F(HeardSimulatorTest, IsFoundAndFoundAgainAfterItsRestart) {
    Options options;
    options.host = kAnyHost;
    options.timeout = std::chrono::milliseconds(20'000);
    velmar::Client client(options);
    EXPECT_EQ(client.host(), "127.0.0.1");
    client.registerDataref({"test/int", velmar::Type::Int});
    simulator->Ask("set test/int 7");
    EXPECT_EQ(client.read("test/int"), velmar::Value(7));
    simulator.reset();
    auto read = std::async(std::launch::async, [&] { return client.read("test/int"); });
    start();
    EXPECT_EQ(read.get(), velmar::Value(0));
}

} // namespace
