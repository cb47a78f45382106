#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network/NetworkResources.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"

namespace {

class NetworkResourcesTest : public testing::Test {
protected:
    FakeUtilities utilities;
    RecordingLogger logger;
    NetworkResources resources{&utilities, &logger};
};

TEST_F(NetworkResourcesTest, AlwaysInitialises) {
    EXPECT_TRUE(resources.Init());
    EXPECT_TRUE(resources.Init());
}

TEST_F(NetworkResourcesTest, CleansUpSilentlyInAnyState) {
    resources.Cleanup();
    EXPECT_TRUE(resources.Init());
    resources.Cleanup();
    resources.Cleanup();
    EXPECT_TRUE(resources.Init());
    EXPECT_THAT(logger.messages, testing::IsEmpty());
}

} // namespace
