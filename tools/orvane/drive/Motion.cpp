#include "tools/orvane/drive/Motion.h"

#include <cmath>

namespace orvane::tool {

namespace {

std::int32_t valueOf(const Wave& wave, double seconds) {
    const double level = levelOf(wave.waveform, seconds / wave.periodSeconds + wave.phase);
    return axisValue(wave.centre + level * wave.amplitude);
}

std::int32_t valueOf(const Steps& steps, double seconds) {
    const auto count = static_cast<double>(steps.values.size());
    const double step = std::fmod(std::floor(seconds / steps.seconds), count);
    return steps.values[static_cast<std::size_t>(step)];
}

} // namespace

std::int32_t valueAt(const Motion& motion, double seconds) {
    return std::visit([&](const auto& each) { return valueOf(each, seconds); }, motion);
}

} // namespace orvane::tool
