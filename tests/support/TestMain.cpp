#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PrivateNetwork.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // Forked: without private networks, a new program would wait for the port that its parent
    // holds.
    GTEST_FLAG_SET(death_test_style, "fast");
    if (!GTEST_FLAG_GET(list_tests)) {
        enterPrivateNetwork();
    }
    return RUN_ALL_TESTS();
}
