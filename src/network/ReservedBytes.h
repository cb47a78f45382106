#pragma once

#include <cstddef>

// An array of bytes, neither zeroed nor touched, of which only what is used costs memory.
//
// A large one is kept apart from the heap, so that the system neither counts it as memory promised,
// which could make it refuse a fork of the simulator's process, nor backs it with huge pages, which
// would cost megabytes for a few bytes. Where the system promises no more than it has, all of it
// counts nevertheless.
class ReservedBytes final {
public:
    // Throws std::bad_alloc.
    explicit ReservedBytes(std::size_t requestedSize);
    ~ReservedBytes();
    ReservedBytes(const ReservedBytes&) = delete;
    ReservedBytes& operator=(const ReservedBytes&) = delete;

    unsigned char* Get() const { return bytes; }

private:
    std::size_t size;
    unsigned char* bytes;
};
