#pragma once

// The weather: reports, and what plugins set. SI units unless the name says otherwise.

#include "XPLMDefs.h"

#define XPLM_NUM_WIND_LAYERS 13
#define XPLM_NUM_CLOUD_LAYERS 3
#define XPLM_NUM_TEMPERATURE_LAYERS 13

typedef struct {
    float alt_msl;
    float speed;
    float direction;
    float gust_speed;
    float shear;
    float turbulence;
} XPLMWeatherInfoWinds_t;

typedef struct {
    float cloud_type;
    float coverage;
    float alt_top;
    float alt_base;
} XPLMWeatherInfoClouds_t;

typedef struct {
    int structSize;
    float temperature_alt;
    float dewpoint_alt;
    float pressure_alt;
    float precip_rate_alt;
    float wind_dir_alt;
    float wind_spd_alt;
    float turbulence_alt;
    float wave_height;
    float wave_length;
    int wave_dir;
    float wave_speed;
    float visibility;
    float precip_rate;
    float thermal_climb;
    float pressure_sl;
    XPLMWeatherInfoWinds_t wind_layers[XPLM_NUM_WIND_LAYERS];
    XPLMWeatherInfoClouds_t cloud_layers[XPLM_NUM_CLOUD_LAYERS];
    float temp_layers[XPLM_NUM_TEMPERATURE_LAYERS];
    float dewp_layers[XPLM_NUM_TEMPERATURE_LAYERS];
    float troposphere_alt;
    float troposphere_temp;
    float age;
    float radius_nm;
    float max_altitude_msl_ft;
} XPLMWeatherInfo_t;

XPLM_API void XPLMGetMETARForAirport(const char* airport_id, XPLMFixedString150_t* outMETAR);
// 1 when detailed weather was found, 0 when the answer is the general one.
XPLM_API int XPLMGetWeatherAtLocation(double latitude, double longitude, double altitude_m,
                                      XPLMWeatherInfo_t* out_info);
// Settings take effect at the end of the update.
XPLM_API void XPLMBeginWeatherUpdate(void);
XPLM_API void XPLMEndWeatherUpdate(int isIncremental, int updateImmediately);
XPLM_API void XPLMSetWeatherAtLocation(double latitude, double longitude,
                                       double ground_altitude_msl, XPLMWeatherInfo_t* in_info);
XPLM_API void XPLMEraseWeatherAtLocation(double latitude, double longitude);
XPLM_API void XPLMSetWeatherAtAirport(const char* airport_id, XPLMWeatherInfo_t* in_info);
XPLM_API void XPLMEraseWeatherAtAirport(const char* airport_id);
