#include "headless/xplm/weather/Weather.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace headless {

namespace {

// The range of a station that was set without one, in nautical miles.
constexpr double kUsualReach = 30.0;
constexpr double kMilesPerDegree = 60.0;

double milesBetween(double latitude, double longitude, double otherLatitude,
                    double otherLongitude) {
    const double north = latitude - otherLatitude;
    const double east = std::remainder(longitude - otherLongitude, 360.0) *
                        std::cos(latitude * std::numbers::pi / 180.0);
    return std::hypot(north, east) * kMilesPerDegree;
}

} // namespace

XPLMWeatherInfo_t Weather::Standard(double altitude) {
    constexpr double kTropopause = 11'000.0;
    constexpr double kTropopauseCelsius = -56.5;
    constexpr double kSeaLevelPascal = 101'325.0;
    const double height = std::clamp(altitude, 0.0, kTropopause);
    const double temperature = 15.0 - 0.0065 * height;
    XPLMWeatherInfo_t weather{};
    weather.structSize = sizeof weather;
    weather.temperature_alt = static_cast<float>(temperature);
    weather.dewpoint_alt = static_cast<float>(temperature - 10.0);
    weather.pressure_alt =
        static_cast<float>(kSeaLevelPascal * std::pow(1.0 - 0.0065 * height / 288.15, 5.2559));
    weather.pressure_sl = static_cast<float>(kSeaLevelPascal);
    weather.visibility = 50'000.0F;
    weather.troposphere_alt = static_cast<float>(kTropopause);
    weather.troposphere_temp = static_cast<float>(kTropopauseCelsius);
    weather.radius_nm = static_cast<float>(kUsualReach);
    return weather;
}

const XPLMWeatherInfo_t* Weather::At(double latitude, double longitude) const {
    const Station* nearest = nullptr;
    double least = 0.0;
    for (const Station& station : stations) {
        const double miles = milesBetween(latitude, longitude, station.latitude, station.longitude);
        const auto given = static_cast<double>(station.information.radius_nm);
        const double reach = given > 0.0 ? given : kUsualReach;
        if (miles <= reach && (nearest == nullptr || miles < least)) {
            nearest = &station;
            least = miles;
        }
    }
    return nearest == nullptr ? nullptr : &nearest->information;
}

void Weather::BeginUpdate() {
    updating = true;
    coming.clear();
}

void Weather::EndUpdate(bool incremental) {
    if (!std::exchange(updating, false)) {
        return;
    }
    if (!incremental) {
        stations.clear();
    }
    for (const Station& station : coming) {
        Erase(station.latitude, station.longitude);
        stations.push_back(station);
    }
}

void Weather::Set(double latitude, double longitude, const XPLMWeatherInfo_t& information) {
    if (updating) {
        coming.push_back({latitude, longitude, information});
    }
}

void Weather::Erase(double latitude, double longitude) {
    std::erase_if(stations, [&](const Station& station) {
        return std::abs(station.latitude - latitude) < 1e-6 &&
               std::abs(std::remainder(station.longitude - longitude, 360.0)) < 1e-6;
    });
}

} // namespace headless
