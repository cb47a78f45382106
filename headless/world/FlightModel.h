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
    explicit FlightModel(Simulator& simulator);

    void Advance(double seconds) const;

    // While resting, Advance() does nothing: something else moves the aircraft.
    void SetResting(bool rests) { isResting = rests; }
    // Updates the local coordinates and the instruments from position, attitude and speed.
    void Follow() const;

private:
    void turn(double seconds) const;
    void accelerate(double seconds) const;
    void travel(double seconds) const;
    void showInstruments() const;

    const LocalFrame& frame;
    const Terrain& terrain;

    // Controls.
    DatarefNumber yokePitch;
    DatarefNumber yokeRoll;
    DatarefNumber pedals;
    DatarefNumber pitchTrim;
    DatarefNumber throttle;
    DatarefNumber flaps;
    DatarefNumber gearDown;

    // State: degrees, degrees per second, metres, metres per second.
    DatarefNumber pitch;
    DatarefNumber roll;
    DatarefNumber heading;
    DatarefNumber rollRate;
    DatarefNumber pitchRate;
    DatarefNumber yawRate;
    DatarefNumber speed;
    DatarefNumber latitude;
    DatarefNumber longitude;
    DatarefNumber elevation;
    DatarefNumber east;
    DatarefNumber up;
    DatarefNumber south;

    // Derived from the state.
    DatarefNumber groundSpeed;
    DatarefNumber climb;
    DatarefNumber height;
    DatarefNumber indicatedSpeed;
    DatarefNumber gaugeSpeed;
    DatarefNumber gaugeAltitude;
    DatarefNumber gaugePitch;
    DatarefNumber gaugeRoll;
    DatarefNumber gaugeHeading;
    DatarefNumber gaugeClimb;
    DatarefNumber loadFactor;
    DatarefNumber rollMoment;
    DatarefNumber pitchMoment;
    DatarefNumber yawMoment;
    DatarefNumber paused;

    bool isResting = false;
};

} // namespace headless
