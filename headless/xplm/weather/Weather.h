#pragma once

#include <vector>

#include "XPLMWeather.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The weather: calm, clear and standard everywhere but where a plugin set another. What is set
// counts from the end of the update on, at once; without an update it is dropped, as the SDK has
// it.
class Weather final {
public:
    // Standard weather at an altitude in metres.
    static XPLMWeatherInfo_t Standard(double altitude);

    // What was set nearest to the place and reaches that far; null for none.
    const XPLMWeatherInfo_t* At(double latitude, double longitude) const;

    void BeginUpdate();
    // Not incremental: what was set before goes.
    void EndUpdate(bool incremental);
    void Set(double latitude, double longitude, const XPLMWeatherInfo_t& information);
    void Erase(double latitude, double longitude);

private:
    struct Station {
        double latitude;
        double longitude;
        XPLMWeatherInfo_t information;
    };

    bool updating = false;
    std::vector<Station> coming;
    std::vector<Station> stations;
};

} // namespace headless
