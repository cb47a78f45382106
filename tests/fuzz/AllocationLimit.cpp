#include "fuzz/AllocationLimit.h"

#include <sys/mman.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

#include <sanitizer/asan_interface.h>

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
    void* const address = ::mmap(nullptr, kPagesOfABuffer + kPageSize, PROT_READ | PROT_WRITE,
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

// Called for every block that is freed: buffers begin at a page, and few other blocks do.
bool giveRegionBack(void* block) {
    if (reinterpret_cast<std::uintptr_t>(block) % kPageSize != 0) {
        return false;
    }
    for (Region& region : regions) {
        if (region.taken && region.address == block) {
            region.taken = false;
            return true;
        }
    }
    return false;
}

void* allocate(std::size_t size) {
    if (size == kConnectionBuffer) {
        return std::exchange(refusesNextBuffer, false) ? nullptr : takeRegion();
    }
    return limited && size > kLargestBlock ? nullptr : std::malloc(size);
}

void* allocateOrThrow(std::size_t size) {
    void* const block = allocate(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void release(void* block) {
    if (block != nullptr && !giveRegionBack(block)) {
        std::free(block);
    }
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
    release(block);
}

void operator delete[](void* block) noexcept {
    release(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    release(block);
}

void operator delete[](void* block, std::size_t /*size*/) noexcept {
    release(block);
}

void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
    release(block);
}

void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept {
    release(block);
}

// The linker redirects calls of calloc to this function (--wrap).
extern "C" void* __real_calloc(std::size_t count, std::size_t size);

extern "C" void* __wrap_calloc(std::size_t count, std::size_t size) {
    const bool isLarge = size > 0 && count > kLargestBlock / size;
    return limited && isLarge ? nullptr : __real_calloc(count, size);
}

#pragma GCC visibility pop
