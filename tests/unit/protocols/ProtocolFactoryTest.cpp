#include <list>
#include <map>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/SimStateInformation.h"
#include "headless/xplm/Simulator.h"
#include "network/RingBuffer.h"
#include "protocols/ProtocolFactory.h"
#include "protocols/tarnel/TarnelProtocol.h"
#include "protocols/velmar/VelmarProtocol.h"
#include "support/Bytes.h"
#include "support/FakeCommandObserver.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"

namespace {

class ProtocolFactoryTest : public testing::Test {
protected:
    ~ProtocolFactoryTest() override {
        for (const auto& instances : made) {
            for (const auto& [identification, protocol] : instances) {
                delete protocol;
            }
        }
    }

    const std::map<unsigned int, IProtocol*>& make() {
        made.push_back(factory.CreateProtocolInstances());
        return made.back();
    }

    headless::Simulator simulator;
    SimStateInformation state;
    FakeCommandObserver observer;
    RecordingLogger logger;
    FakeUtilities utilities;
    ProtocolFactory factory{&state, &observer, &logger, &utilities, nullptr};
    std::list<std::map<unsigned int, IProtocol*>> made;
};

TEST_F(ProtocolFactoryTest, MakesTheControlLoadingProtocolUnderItsIdentification) {
    const auto& instances = make();
    ASSERT_TRUE(instances.contains(0x44332211));
    EXPECT_NE(dynamic_cast<TarnelProtocol*>(instances.at(0x44332211)), nullptr);
}

TEST_F(ProtocolFactoryTest, MakesTheProtocolOfNumberedDatarefsUnderItsIdentification) {
    const auto& instances = make();
    ASSERT_TRUE(instances.contains(0x88776655));
    EXPECT_NE(dynamic_cast<VelmarProtocol*>(instances.at(0x88776655)), nullptr);
}

TEST_F(ProtocolFactoryTest, KeysEveryInstanceByTheIdentificationThatItReturns) {
    const auto& instances = make();
    ASSERT_FALSE(instances.empty());
    for (const auto& [identification, protocol] : instances) {
        EXPECT_EQ(protocol->GetProtocolIdentification(), identification);
    }
}

TEST_F(ProtocolFactoryTest, MakesNewInstancesForEveryConnection) {
    const auto& first = make();
    const auto& second = make();
    ASSERT_EQ(first.size(), second.size());
    for (const auto& [identification, protocol] : first) {
        EXPECT_NE(second.at(identification), protocol);
    }
}

TEST_F(ProtocolFactoryTest, GivesTheSimulatorStateAndTheLoggerToTheControlLoadingProtocol) {
    state.SetPlaneLoaded(true);
    state.ReadPlaneId(); // No description: the hash of a hundred zero bytes.
    RingBuffer in(64, &logger);
    RingBuffer out(64, &logger);
    make().at(0x44332211)->Feed(&in, &out);
    const Bytes answer = drain(out);
    ASSERT_GE(answer.size(), 4U);
    EXPECT_EQ(toHex(Bytes(answer.end() - 4, answer.end())), "07 67 EB F5");
    EXPECT_THAT(logger.messages, testing::Not(testing::IsEmpty()));
}

TEST_F(ProtocolFactoryTest, GivesTheCommandObserverToEveryInstance) {
    const auto instances = factory.CreateProtocolInstances();
    std::vector<IProtocol*> gone;
    for (const auto& [identification, protocol] : instances) {
        delete protocol;
        gone.push_back(protocol);
    }
    EXPECT_EQ(observer.protocolsGone, gone);
}

} // namespace
