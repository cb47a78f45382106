#pragma once

#include "tools/orvane/drive/IInputSource.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/drive/Waveform.h"

namespace orvane::tool {

struct WaveformSettings {
    Waveform waveform = Waveform::Sine;
    double periodSeconds = 4;
    double amplitude = 1; // 1 is from end to end
};

// Moves all axes of a profile together. Switches and commands are left alone.
class WaveformSource final : public IInputSource {
public:
    WaveformSource(const Profile& profile, const WaveformSettings& settings);

    std::optional<InputRow> Next(double seconds) override;

private:
    const WaveformSettings settings;
    std::vector<tarnel::ActionId> axes;
};

} // namespace orvane::tool
