#include "tools/orvane/drive/WaveformSource.h"

namespace orvane::tool {

WaveformSource::WaveformSource(const Profile& profile, const WaveformSettings& chosenSettings)
    : settings(chosenSettings) {
    for (const ProfileInput& input : profile.inputs) {
        if (input.isAxis) {
            axes.push_back(input.action);
        }
    }
}

std::optional<InputRow> WaveformSource::Next(double seconds) {
    const double level = levelOf(settings.waveform, seconds / settings.periodSeconds);
    InputRow row;
    for (const tarnel::ActionId axis : axes) {
        row.items.push_back({axis, axisValue(level * settings.amplitude)});
    }
    return row;
}

} // namespace orvane::tool
