#pragma once

#include "commands/CommandObserver.h"
#include "common/SimStateInformation.h"
#include "datarefs/DatarefProvider.h"
#include "fuzz/EndingLogger.h"
#include "fuzz/Script.h"
#include "headless/xplm/Simulator.h"
#include "support/FakeUtilities.h"

// A small simulator and the plugin's real services in it, new for every input. Its names are those
// that MessageMaker uses. One object at a time, since the simulator calls plain functions.
class FuzzWorld final {
public:
    explicit FuzzWorld(std::vector<std::string_view> documentedEnds);
    ~FuzzWorld();
    FuzzWorld(const FuzzWorld&) = delete;
    FuzzWorld& operator=(const FuzzWorld&) = delete;

    // Plays the steps that happen in the simulator; others are the target's.
    void Play(const Step& step);

    headless::Simulator simulator;
    EndingLogger logger;
    FakeUtilities utilities;
    SimStateInformation simState;
    CommandObserver observer;
    DatarefProvider provider;

private:
    void press(std::uint8_t argument);
    void changeAircraft(bool loaded);
};
