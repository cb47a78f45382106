#pragma once

#include <cstddef>

// An array of bytes, neither zeroed nor touched: only the pages that are used cost memory.
//
// A large array is kept apart from the heap. The system then does not count it as committed, which
// could make it refuse a fork of the simulator's process, and does not back it with huge pages,
// which would cost megabytes for a few bytes. Without overcommit the system counts all of it.
class ReservedBytes final {
public:
    // Throws std::bad_alloc.
    explicit ReservedBytes(std::size_t size);
    ~ReservedBytes();
    ReservedBytes(const ReservedBytes&) = delete;
    ReservedBytes& operator=(const ReservedBytes&) = delete;

    unsigned char* Get() const { return bytes; }

private:
    std::size_t size;
    unsigned char* bytes;
};
