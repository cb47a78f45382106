#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace headless {

// Counts the calls of each function of the SDK. Counting does not allocate memory.
class CallCounts final {
public:
    struct Entry {
        std::string_view function;
        std::uint64_t count = 0;
    };

    // The text must live as long as the process, and each function must have its own.
    void Add(const char* function, std::uint64_t count = 1);
    void Add(const CallCounts& others);
    void Clear();

    std::uint64_t Of(std::string_view function) const;
    std::uint64_t Total() const;
    // The functions that were called, the most frequent first, then by name.
    std::vector<Entry> Entries() const;

private:
    // More than twice the number of functions.
    static constexpr std::size_t kSlots = 1024;

    struct Slot {
        const char* function = nullptr;
        std::uint64_t count = 0;
    };

    std::array<Slot, kSlots> slots{};
    // The slots in use, in the order of their first calls.
    std::array<std::uint16_t, kSlots> taken{};
    std::size_t takenCount = 0;
};

} // namespace headless
