#include "headless/xplm/sound/Sounds.h"

namespace headless {

namespace {

// 0 for an unknown format.
unsigned bytesPerSample(FMOD_SOUND_FORMAT format) {
    switch (format) {
    case FMOD_SOUND_FORMAT_PCM8:
        return 1;
    case FMOD_SOUND_FORMAT_PCM16:
        return 2;
    case FMOD_SOUND_FORMAT_PCM24:
        return 3;
    case FMOD_SOUND_FORMAT_PCM32:
    case FMOD_SOUND_FORMAT_PCMFLOAT:
        return 4;
    default:
        return 0;
    }
}

} // namespace

Sound* Sounds::Play(unsigned bytes, FMOD_SOUND_FORMAT format, int hertz, int channels, bool repeat,
                    XPLMPCMComplete_f callback, void* refcon) {
    const unsigned size = bytesPerSample(format);
    if (size == 0 || hertz < 1 || channels < 1) {
        return nullptr;
    }
    Sound sound;
    if (!repeat) {
        sound.end = clock.Now() + static_cast<double>(bytes) / size / hertz / channels;
    }
    sound.callback = callback;
    sound.refcon = refcon;
    return sounds.Add(sound);
}

bool Sounds::Stop(const void* handle) {
    const Sound* const sound = sounds.Resolve(handle);
    if (sound == nullptr) {
        return false;
    }
    const Sound stopped = *sound;
    const XPLMPluginID owner = sounds.OwnerOf(*sound);
    sounds.Remove(handle);
    if (stopped.callback != nullptr && context.IsActive(owner)) {
        const PluginContext::Call call(context, owner, "sound complete");
        call.Into(stopped.callback, stopped.refcon, FMOD_OK);
    }
    return true;
}

void Sounds::Advance() {
    if (sounds.Size() == 0) {
        return;
    }
    for (const Sound* sound : sounds.All()) {
        if (sounds.Find(sound) != nullptr && sound->end.has_value() && *sound->end <= clock.Now()) {
            Stop(sound);
        }
    }
}

} // namespace headless
