#include "XPLMWeather.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/weather/Weather.h"

using headless::here;
using headless::Weather;

// No station sends reports.
void XPLMGetMETARForAirport(const char* /*airport_id*/, XPLMFixedString150_t* outMETAR) {
    here();
    headless::give(outMETAR, XPLMFixedString150_t{});
}

int XPLMGetWeatherAtLocation(double latitude, double longitude, double altitude_m,
                             XPLMWeatherInfo_t* out_info) {
    const XPLMWeatherInfo_t* const set = here().Weather().At(latitude, longitude);
    if (headless::isGiven(out_info, "information")) {
        headless::giveStructure(out_info, set != nullptr ? *set : Weather::Standard(altitude_m));
    }
    return set != nullptr ? 1 : 0;
}

void XPLMBeginWeatherUpdate(void) {
    here().Weather().BeginUpdate();
}

void XPLMEndWeatherUpdate(int isIncremental, int /*updateImmediately*/) {
    here().Weather().EndUpdate(isIncremental != 0);
}

void XPLMSetWeatherAtLocation(double latitude, double longitude, double /*ground_altitude_msl*/,
                              XPLMWeatherInfo_t* in_info) {
    headless::Simulator& simulator = here();
    if (headless::isGiven(in_info, "information")) {
        simulator.Weather().Set(latitude, longitude, headless::takeStructure(*in_info));
    }
}

void XPLMEraseWeatherAtLocation(double latitude, double longitude) {
    here().Weather().Erase(latitude, longitude);
}

// There are no airports.
void XPLMSetWeatherAtAirport(const char* /*airport_id*/, XPLMWeatherInfo_t* /*in_info*/) {
    here().NotSimulated();
}

void XPLMEraseWeatherAtAirport(const char* /*airport_id*/) {
    here().NotSimulated();
}
