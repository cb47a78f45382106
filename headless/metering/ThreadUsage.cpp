#include "headless/metering/ThreadUsage.h"

#include <dlfcn.h>
#include <sys/resource.h>

#include <ctime>

namespace headless {

namespace {

using CountAllocations = std::uint64_t (*)();

CountAllocations allocationCounter() {
    static const auto counter =
        reinterpret_cast<CountAllocations>(::dlsym(RTLD_DEFAULT, "headless_allocations"));
    return counter;
}

void readCpu(ThreadUsage& usage) {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    usage.cpu = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void readMemory(ThreadUsage& usage) {
    usage.allocations = allocationsAreCounted() ? allocationCounter()() : 0;
    rusage resources{};
    ::getrusage(RUSAGE_THREAD, &resources);
    usage.pages = static_cast<std::uint64_t>(resources.ru_minflt);
}

} // namespace

ThreadUsage ThreadUsage::AtEnd() {
    ThreadUsage usage;
    readCpu(usage);
    readMemory(usage);
    return usage;
}

ThreadUsage ThreadUsage::AtBegin() {
    ThreadUsage usage;
    readMemory(usage);
    readCpu(usage);
    return usage;
}

ThreadUsage& ThreadUsage::operator+=(const ThreadUsage& other) {
    cpu += other.cpu;
    allocations += other.allocations;
    pages += other.pages;
    return *this;
}

ThreadUsage ThreadUsage::operator-(const ThreadUsage& former) const {
    return {cpu - former.cpu, allocations - former.allocations, pages - former.pages};
}

bool allocationsAreCounted() {
    return allocationCounter() != nullptr;
}

} // namespace headless
