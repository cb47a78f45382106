#pragma once

#include <utility>
#include <vector>

#include "tools/orvane/drive/IInputSource.h"
#include "tools/orvane/drive/Motion.h"
#include "tools/orvane/drive/Profile.h"

namespace orvane::tool {

// Moves inputs by the clock. Never ends.
class MotionSource final : public IInputSource {
public:
    // The inputs that the profile moves.
    explicit MotionSource(const Profile& profile);
    // All axes of the profile. Switches and commands do not move.
    MotionSource(const Profile& profile, const Wave& wave);

    std::optional<InputRow> Next(double seconds) override;

private:
    std::vector<std::pair<tarnel::ActionId, Motion>> motions;
};

} // namespace orvane::tool
