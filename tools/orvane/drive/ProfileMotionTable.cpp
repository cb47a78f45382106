#include "tools/orvane/drive/ProfileMotionTable.h"

#include <string>

namespace orvane::tool {

namespace {

constexpr double kShortest = 0.01;
constexpr double kLongest = 86'400;

Wave readWave(ProfileTable& table) {
    Wave wave;
    if (const auto form = table.Choice("form", {kWaveformNames.begin(), kWaveformNames.end()})) {
        wave.waveform = *waveformNamed(*form);
    }
    wave.periodSeconds = table.Number("period", kShortest, kLongest).value_or(wave.periodSeconds);
    wave.phase = table.Number("phase", 0, 1).value_or(wave.phase);
    // In a profile from 0 to 1, in a wave from -1 to 1.
    if (const auto range = table.FloatPair("range")) {
        const auto [from, to] = *range;
        if (from < 0 || from > 1 || to < 0 || to > 1) {
            table.AddProblemAt("range", "\"range\" is not within 0 to 1");
        }
        wave.centre = static_cast<double>(from) + static_cast<double>(to) - 1;
        wave.amplitude = static_cast<double>(to) - static_cast<double>(from);
    }
    table.RefuseUnknown();
    return wave;
}

Steps readSteps(ProfileTable& table) {
    Steps steps{{0}};
    if (!table.Has("values")) {
        table.AddProblem("\"values\" is missing");
    }
    steps.values = table.Int32List("values").value_or(steps.values);
    steps.seconds = table.Number("seconds", kShortest, kLongest).value_or(steps.seconds);
    table.RefuseUnknown();
    return steps;
}

} // namespace

std::optional<Motion> readProfileMotion(ProfileTable& table, bool isAxis) {
    if (table.Has("wave") && table.Has("steps")) {
        table.AddProblemAt("steps", "\"wave\" and \"steps\" exclude each other");
    }
    std::optional<Motion> motion;
    if (std::optional<ProfileTable> steps = table.Table("steps")) {
        motion = readSteps(*steps);
    }
    if (!isAxis) {
        table.Refuse({"wave"}, "is for floats that are not fixed");
    } else if (std::optional<ProfileTable> wave = table.Table("wave")) {
        motion = readWave(*wave);
    }
    return motion;
}

} // namespace orvane::tool
