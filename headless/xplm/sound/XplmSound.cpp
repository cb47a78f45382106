#include "XPLMSound.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/sound/Sounds.h"

using headless::here;
using headless::Sound;

namespace {

FMOD_RESULT resultFor(const Sound* sound) {
    return sound == nullptr ? FMOD_ERR_INVALID_HANDLE : FMOD_OK;
}

} // namespace

FMOD_CHANNEL* XPLMPlayPCMOnBus(void* /*audioBuffer*/, uint32_t bufferSize,
                               FMOD_SOUND_FORMAT soundFormat, int freqHz, int numChannels, int loop,
                               XPLMAudioBus /*audioType*/, XPLMPCMComplete_f inCallback,
                               void* inRefcon) {
    return reinterpret_cast<FMOD_CHANNEL*>(here().Sounds().Play(
        bufferSize, soundFormat, freqHz, numChannels, loop != 0, inCallback, inRefcon));
}

FMOD_RESULT XPLMStopAudio(FMOD_CHANNEL* fmod_channel) {
    return here().Sounds().Stop(fmod_channel) ? FMOD_OK : FMOD_ERR_INVALID_HANDLE;
}

FMOD_RESULT XPLMSetAudioPosition(FMOD_CHANNEL* fmod_channel, FMOD_VECTOR* position,
                                 FMOD_VECTOR* /*velocity*/) {
    Sound* const sound = here().Sounds().Resolve(fmod_channel);
    if (sound != nullptr && position != nullptr) {
        sound->position = *position;
    }
    return resultFor(sound);
}

FMOD_RESULT XPLMSetAudioFadeDistance(FMOD_CHANNEL* fmod_channel, float /*min_fade_distance*/,
                                     float /*max_fade_distance*/) {
    return resultFor(here().Sounds().Resolve(fmod_channel));
}

FMOD_RESULT XPLMSetAudioVolume(FMOD_CHANNEL* fmod_channel, float source_volume) {
    Sound* const sound = here().Sounds().Resolve(fmod_channel);
    if (sound != nullptr) {
        sound->volume = source_volume;
    }
    return resultFor(sound);
}

FMOD_RESULT XPLMSetAudioPitch(FMOD_CHANNEL* fmod_channel, float audio_pitch_hz) {
    Sound* const sound = here().Sounds().Resolve(fmod_channel);
    if (sound != nullptr) {
        sound->pitch = audio_pitch_hz;
    }
    return resultFor(sound);
}

FMOD_RESULT XPLMSetAudioCone(FMOD_CHANNEL* fmod_channel, float /*inside_angle*/,
                             float /*outside_angle*/, float /*outside_volume*/,
                             FMOD_VECTOR* /*orientation*/) {
    return resultFor(here().Sounds().Resolve(fmod_channel));
}

FMOD_STUDIO_SYSTEM* XPLMGetFMODStudio(void) {
    here().NotSimulated();
    return nullptr;
}

FMOD_CHANNELGROUP* XPLMGetFMODChannelGroup(XPLMAudioBus /*audioType*/) {
    here().NotSimulated();
    return nullptr;
}
