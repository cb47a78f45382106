#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace headless {

// How often each function of the SDK was called. Counting takes no memory.
class CallCounts final {
public:
    struct Entry {
        std::string_view function;
        std::uint64_t count = 0;
    };

    // The text lives with the process; each function has one of its own.
    void Add(const char* function, std::uint64_t count = 1);
    void Add(const CallCounts& others);
    void Clear();

    std::uint64_t Of(std::string_view function) const;
    std::uint64_t Total() const;
    // Those that were called, the most frequent first, then by name.
    std::vector<Entry> Entries() const;

private:
    // More than twice as many as there are functions.
    static constexpr std::size_t kSlots = 1024;

    struct Slot {
        const char* function = nullptr;
        std::uint64_t count = 0;
    };

    std::array<Slot, kSlots> slots{};
    // The slots that are taken, in the order of their first calls.
    std::array<std::uint16_t, kSlots> taken{};
    std::size_t takenCount = 0;
};

} // namespace headless
