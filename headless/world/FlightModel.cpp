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

DatarefNumber find(Simulator& simulator, const char* name) {
    return DatarefNumber(simulator.Datarefs().Lookup(name));
}

} // namespace

FlightModel::FlightModel(Simulator& simulator)
    : frame(simulator.Frame()),
      terrain(simulator.Terrain()),
      yokePitch(find(simulator, "sim/cockpit2/controls/yoke_pitch_ratio")),
      yokeRoll(find(simulator, "sim/cockpit2/controls/yoke_roll_ratio")),
      pedals(find(simulator, "sim/cockpit2/controls/yoke_heading_ratio")),
      pitchTrim(find(simulator, "sim/cockpit2/controls/elevator_trim")),
      throttle(find(simulator, "sim/cockpit2/engine/actuators/throttle_ratio")),
      flaps(find(simulator, "sim/cockpit2/controls/flap_ratio")),
      gearDown(find(simulator, "sim/cockpit2/controls/gear_handle_down")),
      pitch(find(simulator, "sim/flightmodel/position/theta")),
      roll(find(simulator, "sim/flightmodel/position/phi")),
      heading(find(simulator, "sim/flightmodel/position/psi")),
      rollRate(find(simulator, "sim/flightmodel/position/P")),
      pitchRate(find(simulator, "sim/flightmodel/position/Q")),
      yawRate(find(simulator, "sim/flightmodel/position/R")),
      speed(find(simulator, "sim/flightmodel/position/true_airspeed")),
      latitude(find(simulator, "sim/flightmodel/position/latitude")),
      longitude(find(simulator, "sim/flightmodel/position/longitude")),
      elevation(find(simulator, "sim/flightmodel/position/elevation")),
      east(find(simulator, "sim/flightmodel/position/local_x")),
      up(find(simulator, "sim/flightmodel/position/local_y")),
      south(find(simulator, "sim/flightmodel/position/local_z")),
      groundSpeed(find(simulator, "sim/flightmodel/position/groundspeed")),
      climb(find(simulator, "sim/flightmodel/position/vh_ind")),
      height(find(simulator, "sim/flightmodel/position/y_agl")),
      indicatedSpeed(find(simulator, "sim/flightmodel/position/indicated_airspeed")),
      gaugeSpeed(find(simulator, "sim/cockpit2/gauges/indicators/airspeed_kts_pilot")),
      gaugeAltitude(find(simulator, "sim/cockpit2/gauges/indicators/altitude_ft_pilot")),
      gaugePitch(find(simulator, "sim/cockpit2/gauges/indicators/pitch_AHARS_deg_pilot")),
      gaugeRoll(find(simulator, "sim/cockpit2/gauges/indicators/roll_AHARS_deg_pilot")),
      gaugeHeading(find(simulator, "sim/cockpit2/gauges/indicators/heading_AHARS_deg_mag_pilot")),
      gaugeClimb(find(simulator, "sim/cockpit2/gauges/indicators/vvi_fpm_pilot")),
      loadFactor(find(simulator, "sim/flightmodel/forces/g_nrml")),
      rollMoment(find(simulator, "sim/flightmodel/forces/L_aero")),
      pitchMoment(find(simulator, "sim/flightmodel/forces/M_aero")),
      yawMoment(find(simulator, "sim/flightmodel/forces/N_aero")),
      paused(find(simulator, "sim/time/paused")) {}

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
    const LocalPosition local = frame.ToLocal({latitude.Get(), longitude.Get(), elevation.Get()});
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
    const LocalPosition at = frame.ToLocal({latitude.Get(), longitude.Get(), elevation.Get()});
    const WorldPosition moved = frame.ToWorld({at.x + sideways, at.y + rise, at.z - north});
    latitude.Set(moved.latitude);
    longitude.Set(moved.longitude);
    elevation.Set(std::max(terrain.Elevation(), moved.altitude));
    east.Set(east.Get() + sideways);
    up.Set(up.Get() + rise);
    south.Set(south.Get() - north);
}

void FlightModel::showInstruments() const {
    const double velocity = speed.Get();
    const double rise = velocity * std::sin(pitch.Get() * kDegree);
    groundSpeed.Set(velocity * std::cos(pitch.Get() * kDegree));
    climb.Set(rise);
    height.Set(elevation.Get() - terrain.Elevation());
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
