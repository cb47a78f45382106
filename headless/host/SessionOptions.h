#pragma once

#include <optional>
#include <string>
#include <vector>

#include "headless/world/WorldVersion.h"

namespace headless {

// What a run of the headless simulator is asked to do. Empty file names mean none.
struct SessionOptions {
    static constexpr double kDefaultFramesPerSecond = 60.0;
    static constexpr double kFewestFramesPerSecond = 0.1;
    static constexpr double kMostFramesPerSecond = 100'000.0;

    // Libraries or folders of plugins, in the order of loading.
    std::vector<std::string> plugins{};
    std::string datarefsFile{};
    std::string commandsFile{};
    std::string logFile = "Log.txt";
    double framesPerSecond = kDefaultFramesPerSecond;
    // Simulated seconds to fly; none: until told to end.
    std::optional<double> durationSeconds{};
    // Refuse a plugin that uses functions which only answer 0, and breaches of the SDK's rules.
    bool strict = false;
    // The version of the simulator whose sizes the default world has: 10, 11 or 12.
    int world = kUsualWorld.number;
    // Elevation of the ground, in metres above mean sea level.
    double groundMetres = 0.0;
    // Give up a callback that takes as many seconds.
    std::optional<double> watchdogSeconds{};
    // Functions that fail on purpose (Failures), and times without frames (Freezes).
    std::vector<std::string> failures{};
    std::vector<std::string> freezes{};
    // Measure what plugins take, and report it, for programs.
    bool stats = false;
    bool json = false;
    // Warn of a plugin's frame that takes more time of the processor.
    std::optional<double> budgetMicroseconds{};
    // Take commands from standard input, and stand still at first.
    bool console = false;
    bool paused = false;
    // Statements to carry out instead; - for standard input. What became of them goes there.
    std::string scriptFile{};
    std::string junitFile{};
    // Flight data to play, and how many times as fast.
    std::string replayFile{};
    double replaySpeed = 1.0;
    // The file to record to, and the datarefs.
    std::vector<std::string> record{};
};

} // namespace headless
