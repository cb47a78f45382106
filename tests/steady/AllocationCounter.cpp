#include "steady/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local Allocations soFar;

} // namespace

Allocations Allocations::SoFar() {
    return soFar;
}

// The array and nothrow forms of the library call this one.
#pragma GCC visibility push(default)

void* operator new(std::size_t size) {
    ++soFar.count;
    soFar.bytes += size;
    void* const block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

#pragma GCC visibility pop
