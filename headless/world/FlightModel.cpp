#include "headless/world/FlightModel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "headless/xplm/graphics/LocalFrame.h"
#include "headless/xplm/scenery/Terrain.h"

namespace headless {

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kGravity = 9.81;
constexpr double kKnotsPerMetrePerSecond = 1.943844;
constexpr double kFeetPerMetre = 3.28084;
constexpr double kSecondsPerMinute = 60.0;

// The aircraft: rates at full deflection and cruising speed, forces balanced at half throttle.
constexpr double kCruise = 60.0;
constexpr double kRollRate = 45.0;
constexpr double kPitchRate = 12.0;
constexpr double kYawRate = 6.0;
constexpr double kPitchStability = 0.4;
constexpr double kTrimmedPitch = 10.0;
constexpr double kThrust = 6.0;
// With the gear down, as at the start.
constexpr double kDrag = kThrust / 2.0 / (kCruise * kCruise) / 1.2;
constexpr double kFlapDrag = 1.0;
constexpr double kGearDrag = 0.2;
constexpr double kMomentPerRate = 900.0;

constexpr double kMaxRoll = 70.0;
constexpr double kMaxPitch = 40.0;
constexpr double kMinSpeed = 20.0;
constexpr double kMaxSpeed = 150.0;

double limited(double value, double limit) {
    return std::clamp(value, -limit, limit);
}

double compass(double degrees) {
    const double turned = std::fmod(degrees, 360.0);
    return turned < 0.0 ? turned + 360.0 : turned;
}

} // namespace

DatarefNumber FlightModel::find(const char* name) const {
    return DatarefNumber(simulator.Datarefs().Lookup(name));
}

void FlightModel::Advance(double seconds) const {
    if (isResting || paused.Get() != 0.0) {
        return;
    }
    turn(seconds);
    accelerate(seconds);
    travel(seconds);
    showInstruments();
}

void FlightModel::Follow() const {
    const LocalPosition local = toLocal({latitude.Get(), longitude.Get(), elevation.Get()});
    east.Set(local.x);
    up.Set(local.y);
    south.Set(local.z);
    showInstruments();
}

void FlightModel::turn(double seconds) const {
    const double velocity = std::max(speed.Get(), kMinSpeed);
    const double effect = velocity / kCruise;
    rollRate.Set(kRollRate * effect * yokeRoll.Get());
    pitchRate.Set(kPitchRate * effect * yokePitch.Get() +
                  kPitchStability * (kTrimmedPitch * pitchTrim.Get() - pitch.Get()));
    yawRate.Set(kYawRate * effect * pedals.Get() +
                kGravity * std::tan(roll.Get() * kDegree) / velocity / kDegree);
    roll.Set(limited(roll.Get() + rollRate.Get() * seconds, kMaxRoll));
    pitch.Set(limited(pitch.Get() + pitchRate.Get() * seconds, kMaxPitch));
    heading.Set(compass(heading.Get() + yawRate.Get() * seconds));
}

void FlightModel::accelerate(double seconds) const {
    const double velocity = speed.Get();
    const double drag = kDrag * (1.0 + kFlapDrag * flaps.Get() + kGearDrag * gearDown.Get());
    const double acceleration = kThrust * throttle.Get() - drag * velocity * velocity -
                                kGravity * std::sin(pitch.Get() * kDegree);
    speed.Set(std::clamp(velocity + acceleration * seconds, kMinSpeed, kMaxSpeed));
}

void FlightModel::travel(double seconds) const {
    const double distance = speed.Get() * seconds;
    const double level = distance * std::cos(pitch.Get() * kDegree);
    const double rise = distance * std::sin(pitch.Get() * kDegree);
    const double north = level * std::cos(heading.Get() * kDegree);
    const double sideways = level * std::sin(heading.Get() * kDegree);
    const LocalPosition at = toLocal({latitude.Get(), longitude.Get(), elevation.Get()});
    const WorldPosition moved = toWorld({at.x + sideways, at.y + rise, at.z - north});
    latitude.Set(moved.latitude);
    longitude.Set(moved.longitude);
    elevation.Set(std::max(simulator.Terrain().Elevation(), moved.altitude));
    east.Set(east.Get() + sideways);
    up.Set(up.Get() + rise);
    south.Set(south.Get() - north);
}

void FlightModel::showInstruments() const {
    const double velocity = speed.Get();
    const double rise = velocity * std::sin(pitch.Get() * kDegree);
    groundSpeed.Set(velocity * std::cos(pitch.Get() * kDegree));
    climb.Set(rise);
    height.Set(elevation.Get() - simulator.Terrain().Elevation());
    indicatedSpeed.Set(velocity * kKnotsPerMetrePerSecond);
    gaugeSpeed.Set(velocity * kKnotsPerMetrePerSecond);
    gaugeAltitude.Set(elevation.Get() * kFeetPerMetre);
    gaugePitch.Set(pitch.Get());
    gaugeRoll.Set(roll.Get());
    gaugeHeading.Set(heading.Get());
    gaugeClimb.Set(rise * kFeetPerMetre * kSecondsPerMinute);
    loadFactor.Set(1.0 / std::cos(roll.Get() * kDegree));
    const double pressure = velocity * velocity / (kCruise * kCruise);
    rollMoment.Set(kMomentPerRate * pressure * yokeRoll.Get());
    pitchMoment.Set(kMomentPerRate * pressure * yokePitch.Get());
    yawMoment.Set(kMomentPerRate * pressure * pedals.Get());
}

} // namespace headless
