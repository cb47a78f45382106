#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

// The least that a buffer behind an interface can do: a call that is not known before it is made,
// and a position that is kept in memory. It checks nothing and never wraps.
class IBareBuffer {
public:
    virtual ~IBareBuffer() = default;
    virtual void Write(std::uint32_t value) = 0;
    virtual void Rewind() = 0;
};

// In a source of its own, so that the compiler cannot see through the interface.
std::unique_ptr<IBareBuffer> makeBareBuffer(std::size_t size);
