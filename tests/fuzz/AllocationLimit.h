#pragma once

// While one exists, no block of more than 256 KiB can be allocated: operator new throws
// std::bad_alloc and calloc returns null, as they would in a simulator that is short of memory. An
// input with a count of two billion elements therefore takes no memory from the machine.
//
// The buffers of a connection are the exception. They are large by design, so they come from a
// store of pages that is reused from input to input, each buffer followed by a page that
// nothing may touch. One object at a time.
class AllocationLimit final {
public:
    AllocationLimit();
    ~AllocationLimit();

    // Refuses the first buffer of the next connection.
    static void RefuseNextBuffer();

    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};
