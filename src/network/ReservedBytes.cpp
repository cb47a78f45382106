#include "network/ReservedBytes.h"

#include <sys/mman.h>

#include <new>

namespace {

// Smaller arrays come from the heap, whose checks then cover them.
constexpr std::size_t kSmallestMapping = 0x100000;

unsigned char* map(std::size_t size) {
    void* const mapping = ::mmap(nullptr, size, PROT_READ | PROT_WRITE,
                                 MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapping == MAP_FAILED) {
        throw std::bad_alloc();
    }
    // Best effort: a kernel without huge pages refuses.
    ::madvise(mapping, size, MADV_NOHUGEPAGE);
    return static_cast<unsigned char*>(mapping);
}

} // namespace

ReservedBytes::ReservedBytes(std::size_t size)
    : size(size), bytes(size < kSmallestMapping ? new unsigned char[size] : map(size)) {}

ReservedBytes::~ReservedBytes() {
    if (size < kSmallestMapping) {
        delete[] bytes;
    } else {
        ::munmap(bytes, size);
    }
}
