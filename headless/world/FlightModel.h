#pragma once

#include "headless/world/DatarefNumber.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// A point mass that responds to yoke, pedals, trim and throttle. It makes the instruments move
// plausibly and inputs visible; it models no real aircraft.
//
// Its whole state is in the simulator's datarefs, so flight continues from what is written there.
// It stands still while sim/time/paused is not 0. Borrows the datarefs; the simulator outlives it.
class FlightModel final {
public:
    explicit FlightModel(Simulator& flownSimulator) : simulator(flownSimulator) {}

    void Advance(double seconds) const;

    // While resting, Advance() does nothing: something else moves the aircraft.
    void SetResting(bool rests) { isResting = rests; }
    // Updates the local coordinates and the instruments from position, attitude and speed.
    void Follow() const;

private:
    DatarefNumber find(const char* name) const;
    void turn(double seconds) const;
    void accelerate(double seconds) const;
    void travel(double seconds) const;
    void showInstruments() const;

    Simulator& simulator;
    // Controls.
    DatarefNumber yokePitch = find("sim/cockpit2/controls/yoke_pitch_ratio");
    DatarefNumber yokeRoll = find("sim/cockpit2/controls/yoke_roll_ratio");
    DatarefNumber pedals = find("sim/cockpit2/controls/yoke_heading_ratio");
    DatarefNumber pitchTrim = find("sim/cockpit2/controls/elevator_trim");
    DatarefNumber throttle = find("sim/cockpit2/engine/actuators/throttle_ratio");
    DatarefNumber flaps = find("sim/cockpit2/controls/flap_ratio");
    DatarefNumber gearDown = find("sim/cockpit2/controls/gear_handle_down");

    // State: degrees, degrees per second, metres, metres per second.
    DatarefNumber pitch = find("sim/flightmodel/position/theta");
    DatarefNumber roll = find("sim/flightmodel/position/phi");
    DatarefNumber heading = find("sim/flightmodel/position/psi");
    DatarefNumber rollRate = find("sim/flightmodel/position/P");
    DatarefNumber pitchRate = find("sim/flightmodel/position/Q");
    DatarefNumber yawRate = find("sim/flightmodel/position/R");
    DatarefNumber speed = find("sim/flightmodel/position/true_airspeed");
    DatarefNumber latitude = find("sim/flightmodel/position/latitude");
    DatarefNumber longitude = find("sim/flightmodel/position/longitude");
    DatarefNumber elevation = find("sim/flightmodel/position/elevation");
    DatarefNumber east = find("sim/flightmodel/position/local_x");
    DatarefNumber up = find("sim/flightmodel/position/local_y");
    DatarefNumber south = find("sim/flightmodel/position/local_z");

    // Derived from the state.
    DatarefNumber groundSpeed = find("sim/flightmodel/position/groundspeed");
    DatarefNumber climb = find("sim/flightmodel/position/vh_ind");
    DatarefNumber height = find("sim/flightmodel/position/y_agl");
    DatarefNumber indicatedSpeed = find("sim/flightmodel/position/indicated_airspeed");
    DatarefNumber gaugeSpeed = find("sim/cockpit2/gauges/indicators/airspeed_kts_pilot");
    DatarefNumber gaugeAltitude = find("sim/cockpit2/gauges/indicators/altitude_ft_pilot");
    DatarefNumber gaugePitch = find("sim/cockpit2/gauges/indicators/pitch_AHARS_deg_pilot");
    DatarefNumber gaugeRoll = find("sim/cockpit2/gauges/indicators/roll_AHARS_deg_pilot");
    DatarefNumber gaugeHeading = find("sim/cockpit2/gauges/indicators/heading_AHARS_deg_mag_pilot");
    DatarefNumber gaugeClimb = find("sim/cockpit2/gauges/indicators/vvi_fpm_pilot");
    DatarefNumber loadFactor = find("sim/flightmodel/forces/g_nrml");
    DatarefNumber rollMoment = find("sim/flightmodel/forces/L_aero");
    DatarefNumber pitchMoment = find("sim/flightmodel/forces/M_aero");
    DatarefNumber yawMoment = find("sim/flightmodel/forces/N_aero");
    DatarefNumber paused = find("sim/time/paused");

    bool isResting = false;
};

} // namespace headless
