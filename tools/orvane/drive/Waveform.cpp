#include "tools/orvane/drive/Waveform.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvane::tool {

namespace {

constexpr double kSweepPeriods = 10;
constexpr double kSweepGain = 10;

double sine(double periods) {
    return std::sin(2 * std::numbers::pi * periods);
}

double triangle(double periods) {
    const double shifted = periods + 0.25;
    return 1 - 4 * std::abs(shifted - std::floor(shifted) - 0.5);
}

double square(double periods) {
    return periods - std::floor(periods) < 0.5 ? 1 : -1;
}

// The frequency rises linearly, so the phase rises with the square of the time.
double sweep(double periods) {
    const double time = std::fmod(periods, kSweepPeriods);
    return sine(time + (kSweepGain - 1) * time * time / (2 * kSweepPeriods));
}

} // namespace

std::optional<Waveform> waveformNamed(std::string_view name) {
    const auto found = std::find(kWaveformNames.begin(), kWaveformNames.end(), name);
    return found == kWaveformNames.end()
               ? std::nullopt
               : std::optional(static_cast<Waveform>(found - kWaveformNames.begin()));
}

double levelOf(Waveform waveform, double periods) {
    switch (waveform) {
    case Waveform::Triangle:
        return triangle(periods);
    case Waveform::Square:
        return square(periods);
    case Waveform::Sweep:
        return sweep(periods);
    case Waveform::Sine:
        break;
    }
    return sine(periods);
}

std::int32_t axisValue(double level) {
    const double raw = (std::clamp(level, -1.0, 1.0) + 1) / 2 * kHighestAxisValue;
    return static_cast<std::int32_t>(std::lround(raw));
}

} // namespace orvane::tool
