#include "headless/metering/CallCounts.h"

#include <algorithm>
#include <bit>

namespace headless {

void CallCounts::Add(const char* function, std::uint64_t count) {
    // The names' addresses are close together; the multiplication spreads them.
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
    constexpr int kBits = std::bit_width(kSlots) - 1;
    std::size_t slot = (reinterpret_cast<std::uintptr_t>(function) * kSpread) >> (64 - kBits);
    while (slots[slot].function != function) {
        if (slots[slot].function == nullptr) {
            slots[slot].function = function;
            taken[takenCount++] = static_cast<std::uint16_t>(slot);
            break;
        }
        slot = (slot + 1) % kSlots;
    }
    slots[slot].count += count;
}

void CallCounts::Add(const CallCounts& others) {
    for (std::size_t i = 0; i < others.takenCount; ++i) {
        const Slot& other = others.slots[others.taken[i]];
        Add(other.function, other.count);
    }
}

void CallCounts::Clear() {
    for (std::size_t i = 0; i < takenCount; ++i) {
        slots[taken[i]].count = 0;
    }
}

std::uint64_t CallCounts::Of(std::string_view function) const {
    std::uint64_t count = 0;
    for (const Slot& slot : slots) {
        if (slot.function != nullptr && slot.function == function) {
            count += slot.count;
        }
    }
    return count;
}

std::uint64_t CallCounts::Total() const {
    std::uint64_t total = 0;
    for (const Slot& slot : slots) {
        total += slot.count;
    }
    return total;
}

std::vector<CallCounts::Entry> CallCounts::Entries() const {
    std::vector<Entry> entries;
    for (const Slot& slot : slots) {
        if (slot.count > 0) {
            entries.push_back({slot.function, slot.count});
        }
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& left, const Entry& right) {
        return left.count != right.count ? left.count > right.count
                                         : left.function < right.function;
    });
    return entries;
}

} // namespace headless
