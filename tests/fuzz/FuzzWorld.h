#pragma once

#include "fuzz/EndingLogger.h"
#include "fuzz/Script.h"
#include "support/FakeUtilities.h"
#include "support/PluginWorld.h"

// A small simulator and the plugin's real objects in it, new for every input. It has the names
// that MessageMaker uses.
class FuzzWorld final : public PluginWorld<EndingLogger, FakeUtilities> {
public:
    explicit FuzzWorld(std::vector<std::string_view> documentedEnds);

    // Plays the steps that happen in the simulator; others are the target's.
    void Play(const Step& step);

private:
    void press(std::uint8_t argument);
    void changeAircraft(bool loaded);
};
