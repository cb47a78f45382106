#pragma once

// While one exists, a block of more than 256 KiB is not to be had: operator new throws
// std::bad_alloc and calloc returns null, as they would in a simulator that is short of memory.
// What an input asks for by a count of two billion elements is thus refused here, and never taken
// from the machine.
//
// The buffers of a connection are the exception. They are large by design, so they come from a
// store of pages that is reused from input to input, each buffer with a page behind it that nothing
// may touch. One object at a time.
class AllocationLimit final {
public:
    AllocationLimit();
    ~AllocationLimit();

    // The next connection is refused its first buffer.
    static void RefuseNextBuffer();

    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};
