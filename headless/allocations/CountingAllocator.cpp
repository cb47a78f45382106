// The system's allocator with a counter. headless-sim loads it only for statistics, so that other
// runs are not slower.

#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace {

thread_local std::uint64_t allocations __attribute__((tls_model("initial-exec"))) = 0;

bool isPowerOfTwo(std::size_t number) {
    return number != 0 && (number & (number - 1)) == 0;
}

} // namespace

extern "C" {

// The C library's own functions, under the names that stay available when others are replaced.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

#pragma GCC visibility push(default)

// Of the calling thread, since it began.
std::uint64_t headless_allocations() {
    return allocations;
}

void* malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    ++allocations;
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    ++allocations;
    return __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
    ++allocations;
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    if (!isPowerOfTwo(alignment) || alignment % sizeof(void*) != 0) {
        return EINVAL;
    }
    void* const made = memalign(alignment, size);
    if (made == nullptr) {
        return ENOMEM;
    }
    *block = made;
    return 0;
}

#pragma GCC visibility pop

} // extern "C"
