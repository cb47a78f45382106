#include "fuzz/AllocationLimit.h"

#include <sys/mman.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

#include <sanitizer/asan_interface.h>

// The linker redirects calls of these functions to `__wrap_...` (--wrap).
extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_mmap(void* address, std::size_t size, int protection, int flags, int file,
                  off_t offset);
int __real_munmap(void* address, std::size_t size);
}

namespace {

constexpr std::size_t kLargestBlock = 256UL * 1024;
constexpr std::size_t kConnectionBuffer = 0x0FFFFFFF;
constexpr std::size_t kPageSize = 4096;
constexpr std::size_t kPagesOfABuffer = (kConnectionBuffer + kPageSize - 1) / kPageSize * kPageSize;

struct Region {
    void* address = nullptr;
    bool taken = false;
};

bool limited = false;
bool refusesNextBuffer = false;
std::array<Region, 64> regions;

void* mapRegion() {
    void* const address = __real_mmap(nullptr, kPagesOfABuffer + kPageSize, PROT_READ | PROT_WRITE,
                                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (address == MAP_FAILED) {
        return nullptr;
    }
    auto* const begin = static_cast<char*>(address);
    ::mprotect(begin + kPagesOfABuffer, kPageSize, PROT_NONE);
    ASAN_POISON_MEMORY_REGION(begin + kConnectionBuffer, kPagesOfABuffer - kConnectionBuffer);
    return address;
}

void* takeRegion() {
    for (Region& region : regions) {
        if (region.taken) {
            continue;
        }
        if (region.address == nullptr) {
            region.address = mapRegion();
        }
        region.taken = region.address != nullptr;
        return region.address;
    }
    return nullptr;
}

bool giveRegionBack(void* block) {
    for (Region& region : regions) {
        if (region.taken && region.address == block) {
            region.taken = false;
            return true;
        }
    }
    return false;
}

void* allocate(std::size_t size) {
    return limited && size > kLargestBlock ? nullptr : std::malloc(size);
}

void* allocateOrThrow(std::size_t size) {
    void* const block = allocate(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

} // namespace

AllocationLimit::AllocationLimit() {
    limited = true;
}

AllocationLimit::~AllocationLimit() {
    limited = false;
    refusesNextBuffer = false;
}

void AllocationLimit::RefuseNextBuffer() {
    refusesNextBuffer = true;
}

// Replaces the sanitizer's own, which would end the process instead of throwing.
#pragma GCC visibility push(default)

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}

void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size);
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete[](void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

void operator delete[](void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
    std::free(block);
}

void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept {
    std::free(block);
}

extern "C" {

void* __wrap_calloc(std::size_t count, std::size_t size) {
    const bool isLarge = size > 0 && count > kLargestBlock / size;
    return limited && isLarge ? nullptr : __real_calloc(count, size);
}

void* __wrap_mmap(void* address, std::size_t size, int protection, int flags, int file,
                  off_t offset) {
    if (size != kConnectionBuffer) {
        return __real_mmap(address, size, protection, flags, file, offset);
    }
    void* const region = std::exchange(refusesNextBuffer, false) ? nullptr : takeRegion();
    return region == nullptr ? MAP_FAILED : region;
}

int __wrap_munmap(void* address, std::size_t size) {
    return giveRegionBack(address) ? 0 : __real_munmap(address, size);
}

} // extern "C"

#pragma GCC visibility pop
