#pragma once

#include <array>

namespace headless {

inline constexpr double kMetresPerFoot = 0.3048;

// The datarefs of a row of a flight data recorder, after its time and in the order of its columns.
inline constexpr std::array<const char*, 6> kFdrPose{
    "sim/flightmodel/position/longitude", "sim/flightmodel/position/latitude",
    "sim/flightmodel/position/elevation", "sim/flightmodel/position/psi",
    "sim/flightmodel/position/theta",     "sim/flightmodel/position/phi"};
// The row has feet for this one, which is in metres.
inline constexpr std::size_t kFdrElevation = 2;

inline constexpr const char* kFdrZuluTime = "sim/time/zulu_time_sec";

// The weather, if the simulator has these.
inline constexpr const char* kFdrPressureInHg = "sim/weather/barometer_sealevel_inhg";
inline constexpr const char* kFdrTemperatureC = "sim/weather/temperature_sealevel_c";
inline constexpr const char* kFdrWindDegrees = "sim/weather/wind_direction_degt";
inline constexpr const char* kFdrWindKnots = "sim/weather/wind_speed_kt";

} // namespace headless
