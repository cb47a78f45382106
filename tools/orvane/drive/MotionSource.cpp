#include "tools/orvane/drive/MotionSource.h"

namespace orvane::tool {

MotionSource::MotionSource(const Profile& profile) {
    for (const ProfileInput& input : profile.inputs) {
        if (input.motion) {
            motions.emplace_back(input.action, *input.motion);
        }
    }
}

MotionSource::MotionSource(const Profile& profile, const Wave& wave) {
    for (const ProfileInput& input : profile.inputs) {
        if (input.isAxis) {
            motions.emplace_back(input.action, wave);
        }
    }
}

std::optional<InputRow> MotionSource::Next(double seconds) {
    InputRow row;
    for (const auto& [action, motion] : motions) {
        row.items.push_back({action, valueAt(motion, seconds)});
    }
    return row;
}

} // namespace orvane::tool
