#include <unistd.h>

#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatarefProviderFixture.h"
#include "support/AddressSpaceLimit.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kGibibyte = 1024UL * 1024 * 1024;

std::size_t residentBytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t mapped = 0;
    std::size_t resident = 0;
    file >> mapped >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

using LargeArrayTest = DatarefProviderFixture;

TEST_F(LargeArrayTest, TakesNoMemoryBeforeItIsWritten) {
    const std::size_t before = residentBytes();
    const XPLMDataRef ints = provider->RegisterIntArray(kGibibyte / 4, "kyr/ints");
    const XPLMDataRef floats = provider->RegisterFloatArray(kGibibyte / 4, "kyr/floats");
    provider->RegisterByteArray(kGibibyte, "kyr/bytes");
    int number = -7;
    float real = -7.0F;
    EXPECT_EQ(XPLMGetDatavi(ints, &number, 200'000'000, 1), 1);
    EXPECT_EQ(XPLMGetDatavf(floats, &real, 200'000'000, 1), 1);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(real, 0.0F);
    number = 5;
    XPLMSetDatavi(ints, &number, 100'000'000, 1);
    number = 0;
    XPLMGetDatavi(ints, &number, 100'000'000, 1);
    EXPECT_EQ(number, 5);
    EXPECT_LT(residentBytes() - before, 10UL * 1024 * 1024);
}

TEST_F(LargeArrayTest, IsIgnoredInTheFileWhenThereIsNoMemoryForIt) {
    const std::string content =
        "kyr/before int\n"
        "kyr/a int_array 2147483647\n"
        "kyr/b float_array 2147483647\n"
        "kyr/c byte_array 2147483647\n"
        "kyr/after int_array 3\n";
    directory.Write(kConfigFile, content);
    {
        const AddressSpaceLimit limit(kGibibyte);
        provider->ParseConfig();
    }
    EXPECT_THAT(registrations(), ElementsAre("kyr/before, 1, writable", "kyr/after, 16, writable"));
    EXPECT_THAT(logger.messages, IsEmpty());
    provider->RegisterIntArray(4, "kyr/a");
    provider->RegisterInt("kyr/before");
    EXPECT_EQ(directory.Read(kConfigFile), content + "\nkyr/a int_array 4");
}

// A refused name stays in the file.
TEST_F(LargeArrayTest, LeavesTheEarlierLineOfItsNameInForce) {
    simulator.Datarefs().RefuseRegistration("kyr/a");
    directory.Write(kConfigFile, "kyr/a int\nkyr/a int_array 2147483647\n");
    const AddressSpaceLimit limit(kGibibyte);
    provider->ParseConfig();
    provider->ensureDatarefInConfig("kyr/a", "int", 0);
    EXPECT_EQ(directory.Read(kConfigFile), "kyr/a int\nkyr/a int_array 2147483647\n");
}

} // namespace
