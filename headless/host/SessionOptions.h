#pragma once

#include <optional>
#include <string>
#include <vector>

#include "headless/world/WorldOptions.h"

namespace headless {

// Options of a headless simulator run. Empty file names mean none.
struct SessionOptions {
    static constexpr double kFewestFramesPerSecond = 0.1;
    static constexpr double kMostFramesPerSecond = 100'000.0;

    // Plugin libraries or folders, in loading order.
    std::vector<std::string> plugins{};
    WorldOptions world{};
    std::string logFile = "Log.txt";
    double framesPerSecond = 60.0;
    // Simulated seconds to fly; if empty, until something ends the run.
    std::optional<double> durationSeconds{};
    // Refuse plugins that use functions which only answer 0, and breaches of the SDK's rules.
    bool strict = false;
    // End the process if a callback takes this long.
    std::optional<double> watchdogSeconds{};
    // Functions that fail on purpose (Failures), and times without frames (Freezes).
    std::vector<std::string> failures{};
    std::vector<std::string> freezes{};
    // Measure what plugins use; report it as JSON.
    bool stats = false;
    bool json = false;
    // Warn if a plugin uses more CPU time than this in a frame.
    std::optional<double> budgetMicroseconds{};
    // Announce the simulator on the network.
    bool beacon = false;
    // Take statements from standard input; start paused.
    bool console = false;
    bool paused = false;
    // A file of statements to carry out instead, - for standard input, and a file for the results.
    std::string scriptFile{};
    std::string junitFile{};
    // Flight data to replay, and how many times as fast.
    std::string replayFile{};
    double replaySpeed = 1.0;
    // The file to record to, followed by the datarefs.
    std::vector<std::string> record{};
};

} // namespace headless
