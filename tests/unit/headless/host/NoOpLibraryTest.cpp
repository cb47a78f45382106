#include <dlfcn.h>

#include <gtest/gtest.h>

#include "headless/host/NoOpLibrary.h"

using headless::loadNoOpLibrary;

TEST(NoOpLibraryTest, ItsFunctionsAnswerZero) {
    loadNoOpLibrary("libheadless-test.so.1", {"headlessTestOne", "headlessTestTwo"});
    const auto one = reinterpret_cast<int (*)(int)>(::dlsym(RTLD_DEFAULT, "headlessTestOne"));
    const auto two = reinterpret_cast<double (*)(double)>(::dlsym(RTLD_DEFAULT, "headlessTestTwo"));
    ASSERT_NE(one, nullptr);
    ASSERT_NE(two, nullptr);
    EXPECT_EQ(one(5), 0);
    EXPECT_EQ(two(5.0), 0.0);
    EXPECT_EQ(::dlsym(RTLD_DEFAULT, "headlessTestThree"), nullptr);
}

TEST(NoOpLibraryTest, StandsForTheLibraryOfItsName) {
    EXPECT_EQ(::dlopen("libheadless-other.so.1", RTLD_NOW), nullptr);
    loadNoOpLibrary("libheadless-other.so.1", {"headlessTestOther"});
    void* const library = ::dlopen("libheadless-other.so.1", RTLD_NOW);
    ASSERT_NE(library, nullptr);
    EXPECT_NE(::dlsym(library, "headlessTestOther"), nullptr);
}
