#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PrivateNetwork.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // Death tests in a fresh process: the plugin's fatal reports abort.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    if (!GTEST_FLAG_GET(list_tests)) {
        enterPrivateNetwork();
    }
    return RUN_ALL_TESTS();
}
