#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "tools/orvane/drive/Waveform.h"

namespace orvane::tool {

// An axis that follows a waveform. 1 is the upper end of the axis, -1 the lower one.
struct Wave {
    Waveform waveform = Waveform::Sine;
    double periodSeconds = 4;
    double amplitude = 1;
    double centre = 0;
    double phase = 0; // in periods
};

// Values in a cycle. There is at least one.
struct Steps {
    std::vector<std::int32_t> values;
    double seconds = 1; // each
};

// How an input moves by itself.
using Motion = std::variant<Wave, Steps>;

// What the input sends at this time after the start.
std::int32_t valueAt(const Motion& motion, double seconds);

} // namespace orvane::tool
