#pragma once

// Sound. The handles are those of the sound library that the simulator uses.

#include "XPLMDefs.h"

typedef int XPLMAudioBus;

enum {
    xplm_AudioRadioCom1 = 0,
    xplm_AudioRadioCom2 = 1,
    xplm_AudioRadioPilot = 2,
    xplm_AudioRadioCopilot = 3,
    xplm_AudioExteriorAircraft = 4,
    xplm_AudioExteriorEnvironment = 5,
    xplm_AudioExteriorUnprocessed = 6,
    xplm_AudioInterior = 7,
    xplm_AudioUI = 8,
    xplm_AudioGround = 9,
    xplm_Master = 10
};

typedef int FMOD_RESULT;
typedef int FMOD_SOUND_FORMAT;
typedef struct FMOD_CHANNEL FMOD_CHANNEL;
typedef struct FMOD_CHANNELGROUP FMOD_CHANNELGROUP;
typedef struct FMOD_STUDIO_SYSTEM FMOD_STUDIO_SYSTEM;

enum { FMOD_OK = 0, FMOD_ERR_INVALID_HANDLE = 30 };

enum {
    FMOD_SOUND_FORMAT_NONE = 0,
    FMOD_SOUND_FORMAT_PCM8 = 1,
    FMOD_SOUND_FORMAT_PCM16 = 2,
    FMOD_SOUND_FORMAT_PCM24 = 3,
    FMOD_SOUND_FORMAT_PCM32 = 4,
    FMOD_SOUND_FORMAT_PCMFLOAT = 5
};

typedef struct FMOD_VECTOR {
    float x;
    float y;
    float z;
} FMOD_VECTOR;

typedef void (*XPLMPCMComplete_f)(void* inRefcon, FMOD_RESULT status);

XPLM_API FMOD_CHANNEL* XPLMPlayPCMOnBus(void* audioBuffer, uint32_t bufferSize,
                                        FMOD_SOUND_FORMAT soundFormat, int freqHz, int numChannels,
                                        int loop, XPLMAudioBus audioType,
                                        XPLMPCMComplete_f inCallback, void* inRefcon);
XPLM_API FMOD_RESULT XPLMStopAudio(FMOD_CHANNEL* fmod_channel);
XPLM_API FMOD_RESULT XPLMSetAudioPosition(FMOD_CHANNEL* fmod_channel, FMOD_VECTOR* position,
                                          FMOD_VECTOR* velocity);
XPLM_API FMOD_RESULT XPLMSetAudioFadeDistance(FMOD_CHANNEL* fmod_channel, float min_fade_distance,
                                              float max_fade_distance);
XPLM_API FMOD_RESULT XPLMSetAudioVolume(FMOD_CHANNEL* fmod_channel, float source_volume);
XPLM_API FMOD_RESULT XPLMSetAudioPitch(FMOD_CHANNEL* fmod_channel, float audio_pitch_hz);
XPLM_API FMOD_RESULT XPLMSetAudioCone(FMOD_CHANNEL* fmod_channel, float inside_angle,
                                      float outside_angle, float outside_volume,
                                      FMOD_VECTOR* orientation);
XPLM_API FMOD_STUDIO_SYSTEM* XPLMGetFMODStudio(void);
XPLM_API FMOD_CHANNELGROUP* XPLMGetFMODChannelGroup(XPLMAudioBus audioType);
