#pragma once

#include <vector>

#include "XPLMWeather.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The weather: calm, clear and standard except where a plugin set another. Settings take effect at
// the end of the update, at once; without an update they are dropped, as in the SDK.
class Weather final {
public:
    // Standard weather at an altitude in metres.
    static XPLMWeatherInfo_t Standard(double altitude);

    // The nearest setting whose range includes the place; null for none.
    const XPLMWeatherInfo_t* At(double latitude, double longitude) const;

    void BeginUpdate();
    // If not incremental, first removes what was set before.
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
