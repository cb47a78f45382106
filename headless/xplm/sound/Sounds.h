#pragma once

#include <optional>

#include "XPLMSound.h"
#include "headless/xplm/Clock.h"
#include "headless/xplm/OwnedObjects.h"

namespace headless {

// A sound that is playing. Nothing is heard.
struct Sound {
    // When it ends, in simulated seconds; empty if it repeats until it is stopped.
    std::optional<double> end;
    XPLMPCMComplete_f callback = nullptr;
    void* refcon = nullptr;
    FMOD_VECTOR position{};
    float volume = 1.0F;
    float pitch = 0.0F;
};

// Sounds last as long as they really would, then call their plugin.
class Sounds final {
public:
    Sounds(const Clock& simulatedClock, PluginContext& pluginContext, CallRecorder& callRecorder)
        : clock(simulatedClock),
          context(pluginContext),
          sounds(pluginContext, callRecorder, "sound") {}
    Sounds(const Sounds&) = delete;
    Sounds& operator=(const Sounds&) = delete;

    // Null for an unknown format, or a rate or channel count below 1.
    Sound* Play(unsigned bytes, FMOD_SOUND_FORMAT format, int hertz, int channels, bool repeat,
                XPLMPCMComplete_f callback, void* refcon);
    // False if there is no such sound; records the refusal.
    bool Stop(const void* handle);
    // Null if there is no such sound; records the refusal.
    Sound* Resolve(const void* handle) { return sounds.Resolve(handle); }

    // Once per frame: ends the sounds that are over.
    void Advance();
    std::size_t DropOf(XPLMPluginID plugin) { return sounds.DropOf(plugin); }

private:
    const Clock& clock;
    PluginContext& context;
    OwnedObjects<Sound> sounds;
};

} // namespace headless
