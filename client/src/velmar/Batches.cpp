#include "velmar/Batches.h"

namespace orvane::velmar {

std::vector<Batch> cutIntoRequests(std::span<const Cost> packets, Cost base) {
    std::vector<Batch> batches;
    Cost sum = base;
    for (std::size_t index = 0; index < packets.size(); ++index) {
        const Cost& packet = packets[index];
        const bool fits = sum.request + packet.request <= kLargestRequest &&
                          sum.answer + packet.answer <= kLargestAnswer;
        if (batches.empty() || !fits) {
            batches.push_back({index, index});
            sum = base;
        }
        sum.request += packet.request;
        sum.answer += packet.answer;
        batches.back().end = index + 1;
    }
    return batches;
}

} // namespace orvane::velmar
