#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane::tool {

enum class Waveform { Sine, Triangle, Square, Sweep };

// In the same order.
inline constexpr std::array<std::string_view, 4> kWaveformNames{"sine", "triangle", "square",
                                                                "sweep"};

// Empty for any other text.
std::optional<Waveform> waveformNamed(std::string_view name);

// From -1 to 1. Sine, triangle and sweep begin in the middle and rise; a square begins high. A
// sweep is a sine that speeds up from one to ten oscillations per period over ten periods, then
// repeats.
double levelOf(Waveform waveform, double periods);

inline constexpr double kHighestAxisValue = 65535;

// The raw axis value for a level: 0 to 65535, with 32768 in the middle.
std::int32_t axisValue(double level);

} // namespace orvane::tool
