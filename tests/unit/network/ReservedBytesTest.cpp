#include <sys/sysinfo.h>

#include <limits>
#include <memory>
#include <new>
#include <vector>

#include <gtest/gtest.h>

#include "network/ReservedBytes.h"
#include "support/ChildProcess.h"

namespace {

constexpr std::size_t kBufferOfAConnection = 0x0FFFFFFF;

void expectUsable(std::size_t size) {
    const ReservedBytes reserved(size);
    reserved.Get()[0] = 0x11;
    reserved.Get()[size - 1] = 0x22;
    EXPECT_EQ(reserved.Get()[0], 0x11);
    EXPECT_EQ(reserved.Get()[size - 1], 0x22);
}

TEST(ReservedBytesTest, AreUsableFromEndToEnd) {
    expectUsable(2);
    expectUsable(0xFFFFF);
    expectUsable(0x100000);
    expectUsable(kBufferOfAConnection);
}

TEST(ReservedBytesTest, ThrowWhenAddressSpaceIsShort) {
    EXPECT_THROW(ReservedBytes(std::numeric_limits<std::size_t>::max() / 4), std::bad_alloc);
}

// Another plugin may fork, however many clients there are.
TEST(ReservedBytesTest, AllowAForkEvenWhenLargerThanTheMachinesMemory) {
    struct sysinfo machine {};
    ASSERT_EQ(::sysinfo(&machine), 0);
    const std::size_t total = (machine.totalram + machine.totalswap) * machine.mem_unit;
    std::vector<std::unique_ptr<ReservedBytes>> reservations;
    for (std::size_t reserved = 0; reserved < total + total / 2; reserved += kBufferOfAConnection) {
        reservations.push_back(std::make_unique<ReservedBytes>(kBufferOfAConnection));
    }
    ChildProcess child([] {});
    EXPECT_EQ(child.WaitForEnd(), 0);
}

} // namespace
