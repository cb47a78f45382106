#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>

// An array of zeros that takes memory only when it is used: the system provides a page when it is
// first written to. A std::vector would write to all of them.
//
// Unlike reserved address space, the memory is committed. If the machine does not have it, this
// fails at once, and not when somebody writes to it in the middle of a flight.
template <typename Number>
class ZeroedArray final {
public:
    // Throws std::bad_alloc, or std::length_error for a size that no machine could have.
    explicit ZeroedArray(std::size_t size)
        : count(size), numbers(static_cast<Number*>(std::calloc(checked(size), sizeof(Number)))) {
        if (numbers == nullptr && size > 0) {
            throw std::bad_alloc();
        }
    }

    std::size_t Size() const { return count; }
    Number* Data() { return numbers.get(); }
    const Number* Data() const { return numbers.get(); }

private:
    struct Free {
        void operator()(Number* block) const { std::free(block); }
    };

    static std::size_t checked(std::size_t size) {
        if (size > PTRDIFF_MAX / sizeof(Number)) {
            throw std::length_error("ZeroedArray: the size is negative or too large");
        }
        return size;
    }

    std::size_t count;
    std::unique_ptr<Number[], Free> numbers;
};
