#include "tools/demo/RoundTripTimes.h"

#include <algorithm>

namespace demo {

RoundTripTimes::Microseconds RoundTripTimes::percentile(std::size_t percent) const {
    if (times.empty()) {
        return Microseconds(0);
    }
    std::vector<Microseconds> ordered = times;
    // The smallest of them that `percent` of 100 do not exceed.
    const std::size_t rank = (ordered.size() * percent + 99) / 100;
    const auto place = ordered.begin() + static_cast<std::ptrdiff_t>(rank == 0 ? 0 : rank - 1);
    std::nth_element(ordered.begin(), place, ordered.end());
    return *place;
}

} // namespace demo
