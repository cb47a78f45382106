#include "headless/world/DefaultWorld.h"

#include "headless/world/DatarefNumber.h"
#include "headless/xplm/graphics/LocalFrame.h"

namespace headless {

namespace {

struct DatarefRow {
    const char* name;
    XPLMDataTypeID type;
    int elements;
    bool writable;
    const char* units;
    const char* description;
};

struct CommandRow {
    const char* name;
    const char* description;
};

struct StartValue {
    const char* name;
    double value;
};

// Doubles can also be read and written as floats.
constexpr XPLMDataTypeID kDouble = xplmType_Double | xplmType_Float;

// Placeholders for element counts that depend on the version.
constexpr int kEngines = -1;
constexpr int kAxes = -2;

constexpr DatarefRow kDatarefs[] = {
    {"sim/time/paused", xplmType_Int, 0, false, "boolean", "Is the simulation paused"},
    {"sim/time/total_running_time_sec", xplmType_Float, 0, true, "seconds",
     "Time that the simulator has been running"},
    {"sim/time/zulu_time_sec", xplmType_Float, 0, true, "seconds", "Time of day, UTC"},
    {"sim/version/xplane_internal_version", xplmType_Int, 0, false, "number",
     "Version of the simulator"},
    {"sim/operation/override/override_joystick", xplmType_Int, 0, true, "boolean",
     "Plugins own all flight controls"},
    {"sim/operation/override/override_joystick_pitch", xplmType_Int, 0, true, "boolean",
     "Plugins own the pitch axis"},
    {"sim/operation/override/override_joystick_roll", xplmType_Int, 0, true, "boolean",
     "Plugins own the roll axis"},
    {"sim/operation/override/override_joystick_heading", xplmType_Int, 0, true, "boolean",
     "Plugins own the yaw axis"},
    {"sim/operation/override/override_throttles", xplmType_Int, 0, true, "boolean",
     "Plugins own the throttles"},
    {"sim/operation/override/override_toe_brakes", xplmType_Int, 0, true, "boolean",
     "Plugins own the toe brakes"},
    {"sim/joystick/has_joystick", xplmType_Int, 0, false, "boolean", "Is a joystick present"},
    {"sim/joystick/yoke_pitch_ratio", xplmType_Float, 0, true, "[-1..1]",
     "Pitch deflection of the joystick"},
    {"sim/joystick/yoke_roll_ratio", xplmType_Float, 0, true, "[-1..1]",
     "Roll deflection of the joystick"},
    {"sim/joystick/yoke_heading_ratio", xplmType_Float, 0, true, "[-1..1]",
     "Yaw deflection of the joystick"},
    {"sim/joystick/joystick_axis_values", xplmType_FloatArray, kAxes, false, "ratio",
     "Values of all joystick axes"},
    {"sim/cockpit2/controls/yoke_pitch_ratio", xplmType_Float, 0, true, "[-1..1]",
     "Pitch deflection of the yoke"},
    {"sim/cockpit2/controls/yoke_roll_ratio", xplmType_Float, 0, true, "[-1..1]",
     "Roll deflection of the yoke"},
    {"sim/cockpit2/controls/yoke_heading_ratio", xplmType_Float, 0, true, "[-1..1]",
     "Deflection of the rudder pedals"},
    {"sim/cockpit2/controls/elevator_trim", xplmType_Float, 0, true, "[-1..1]", "Elevator trim"},
    {"sim/cockpit2/controls/aileron_trim", xplmType_Float, 0, true, "[-1..1]", "Aileron trim"},
    {"sim/cockpit2/controls/rudder_trim", xplmType_Float, 0, true, "[-1..1]", "Rudder trim"},
    {"sim/cockpit2/controls/flap_ratio", xplmType_Float, 0, true, "[0..1]", "Handle of the flaps"},
    {"sim/cockpit2/controls/speedbrake_ratio", xplmType_Float, 0, true, "[-0.5..1]",
     "Handle of the speed brakes"},
    {"sim/cockpit2/controls/left_brake_ratio", xplmType_Float, 0, true, "[0..1]", "Left toe brake"},
    {"sim/cockpit2/controls/right_brake_ratio", xplmType_Float, 0, true, "[0..1]",
     "Right toe brake"},
    {"sim/cockpit2/controls/parking_brake_ratio", xplmType_Float, 0, true, "[0..1]",
     "Parking brake"},
    {"sim/cockpit2/controls/gear_handle_down", xplmType_Int, 0, true, "boolean",
     "Is the gear handle down"},
    {"sim/cockpit2/engine/actuators/throttle_ratio", xplmType_FloatArray, kEngines, true, "[0..1]",
     "Throttle of each engine"},
    {"sim/cockpit2/engine/actuators/mixture_ratio", xplmType_FloatArray, kEngines, true, "[0..1]",
     "Mixture of each engine"},
    {"sim/cockpit2/engine/actuators/prop_rotation_speed_rad_sec", xplmType_FloatArray, kEngines,
     true, "rad/sec", "Commanded propeller speed"},
    {"sim/cockpit2/engine/actuators/ignition_key", xplmType_IntArray, kEngines, true, "enum",
     "Position of the ignition key"},
    {"sim/cockpit2/gauges/indicators/airspeed_kts_pilot", xplmType_Float, 0, true, "knots",
     "Indicated airspeed, pilot"},
    {"sim/cockpit2/gauges/indicators/altitude_ft_pilot", xplmType_Float, 0, true, "feet",
     "Indicated altitude, pilot"},
    {"sim/cockpit2/gauges/indicators/pitch_AHARS_deg_pilot", xplmType_Float, 0, true, "degrees",
     "Indicated pitch, pilot"},
    {"sim/cockpit2/gauges/indicators/roll_AHARS_deg_pilot", xplmType_Float, 0, true, "degrees",
     "Indicated roll, pilot"},
    {"sim/cockpit2/gauges/indicators/heading_AHARS_deg_mag_pilot", xplmType_Float, 0, false,
     "degrees", "Indicated heading, pilot"},
    {"sim/cockpit2/gauges/indicators/vvi_fpm_pilot", xplmType_Float, 0, true, "feet/minute",
     "Indicated vertical speed, pilot"},
    {"sim/cockpit2/autopilot/servos_on", xplmType_Int, 0, false, "boolean", "Are the servos on"},
    {"sim/cockpit/autopilot/autopilot_state", xplmType_Int, 0, true, "bitfield",
     "Modes of the autopilot"},
    {"sim/cockpit2/autopilot/flight_director_mode", xplmType_Int, 0, true, "enum",
     "Off, flight director or servos"},
    {"sim/cockpit/autopilot/autopilot_mode", xplmType_Int, 0, true, "enum",
     "Off, flight director or on"},
    {"sim/cockpit/autopilot/heading_mag", xplmType_Float, 0, true, "degrees", "Heading to hold"},
    {"sim/cockpit/autopilot/altitude", xplmType_Float, 0, true, "feet", "Altitude to hold"},
    {"sim/cockpit/electrical/battery_on", xplmType_Int, 0, true, "boolean", "Is the battery on"},
    {"sim/flightmodel/position/latitude", kDouble, 0, false, "degrees", "Latitude of the aircraft"},
    {"sim/flightmodel/position/longitude", kDouble, 0, false, "degrees",
     "Longitude of the aircraft"},
    {"sim/flightmodel/position/elevation", kDouble, 0, false, "meters",
     "Elevation above mean sea level"},
    {"sim/flightmodel/position/local_x", kDouble, 0, true, "meters",
     "Place in local coordinates, east"},
    {"sim/flightmodel/position/local_y", kDouble, 0, true, "meters",
     "Place in local coordinates, up"},
    {"sim/flightmodel/position/local_z", kDouble, 0, true, "meters",
     "Place in local coordinates, south"},
    {"sim/flightmodel/position/lat_ref", xplmType_Float, 0, false, "degrees",
     "Latitude of the origin of local coordinates"},
    {"sim/flightmodel/position/lon_ref", xplmType_Float, 0, false, "degrees",
     "Longitude of the origin of local coordinates"},
    {"sim/flightmodel/position/theta", xplmType_Float, 0, true, "degrees", "Pitch"},
    {"sim/flightmodel/position/phi", xplmType_Float, 0, true, "degrees", "Roll"},
    {"sim/flightmodel/position/psi", xplmType_Float, 0, true, "degrees", "True heading"},
    {"sim/flightmodel/position/P", xplmType_Float, 0, true, "deg/sec", "Roll rate"},
    {"sim/flightmodel/position/Q", xplmType_Float, 0, true, "deg/sec", "Pitch rate"},
    {"sim/flightmodel/position/R", xplmType_Float, 0, true, "deg/sec", "Yaw rate"},
    {"sim/flightmodel/position/indicated_airspeed", xplmType_Float, 0, true, "knots",
     "Indicated airspeed"},
    {"sim/flightmodel/position/true_airspeed", xplmType_Float, 0, true, "meters/sec",
     "True airspeed"},
    {"sim/flightmodel/position/groundspeed", xplmType_Float, 0, false, "meters/sec",
     "Speed over ground"},
    {"sim/flightmodel/position/vh_ind", xplmType_Float, 0, false, "meters/sec",
     "Vertical velocity"},
    {"sim/flightmodel/position/y_agl", xplmType_Float, 0, false, "meters", "Height above ground"},
    {"sim/flightmodel/position/q", xplmType_FloatArray, 4, true, "quaternion",
     "Attitude as a quaternion"},
    {"sim/flightmodel/controls/elv_trim", xplmType_Float, 0, true, "[-1..1]",
     "Elevator trim of the flight model"},
    {"sim/flightmodel/controls/flaprqst", xplmType_Float, 0, true, "[0..1]",
     "Requested flap deployment"},
    {"sim/flightmodel/controls/parkbrake", xplmType_Float, 0, true, "[0..1]",
     "Parking brake of the flight model"},
    {"sim/flightmodel/forces/L_aero", xplmType_Float, 0, true, "newton-meters",
     "Aerodynamic roll moment"},
    {"sim/flightmodel/forces/M_aero", xplmType_Float, 0, true, "newton-meters",
     "Aerodynamic pitch moment"},
    {"sim/flightmodel/forces/N_aero", xplmType_Float, 0, true, "newton-meters",
     "Aerodynamic yaw moment"},
    {"sim/flightmodel/forces/g_nrml", xplmType_Float, 0, false, "g", "Load factor, downward"},
    {"sim/flightmodel/failures/onground_any", xplmType_Int, 0, true, "boolean",
     "Does any wheel touch the ground"},
    {"sim/aircraft/view/acf_descrip", xplmType_Data, 260, true, "string",
     "Description of the aircraft"},
    {"sim/aircraft/view/acf_tailnum", xplmType_Data, 40, true, "string",
     "Tail number of the aircraft"},
    {"sim/aircraft/view/acf_ICAO", xplmType_Data, 40, true, "string", "Type code of the aircraft"},
    {"sim/aircraft/engine/acf_num_engines", xplmType_Int, 0, true, "count", "Number of engines"},
};

constexpr CommandRow kCommands[] = {
    {"sim/flight_controls/flaps_up", "Flaps up a notch."},
    {"sim/flight_controls/flaps_down", "Flaps down a notch."},
    {"sim/flight_controls/landing_gear_up", "Landing gear up."},
    {"sim/flight_controls/landing_gear_down", "Landing gear down."},
    {"sim/flight_controls/landing_gear_toggle", "Landing gear toggle."},
    {"sim/flight_controls/speed_brakes_up_one", "Speed brakes up a notch."},
    {"sim/flight_controls/speed_brakes_down_one", "Speed brakes down a notch."},
    {"sim/flight_controls/brakes_toggle_regular", "Toggle brakes, regular effort."},
    {"sim/flight_controls/brakes_toggle_max", "Toggle brakes, maximum effort."},
    {"sim/flight_controls/brakes_max", "Hold brakes, maximum effort."},
    {"sim/flight_controls/pitch_trim_up", "Pitch trim up."},
    {"sim/flight_controls/pitch_trim_down", "Pitch trim down."},
    {"sim/flight_controls/pitch_trim_takeoff", "Pitch trim for take-off."},
    {"sim/flight_controls/rudder_trim_left", "Yaw trim left."},
    {"sim/flight_controls/rudder_trim_right", "Yaw trim right."},
    {"sim/flight_controls/rudder_trim_center", "Yaw trim to the center."},
    {"sim/flight_controls/aileron_trim_left", "Roll trim left."},
    {"sim/flight_controls/aileron_trim_right", "Roll trim right."},
    {"sim/flight_controls/aileron_trim_center", "Roll trim to the center."},
    {"sim/autopilot/servos_on", "Servos on."},
    {"sim/autopilot/servos_off_any", "Servos off, in any way."},
    {"sim/autopilot/servos_toggle", "Servos toggle."},
    {"sim/autopilot/fdir_toggle", "Flight director toggle."},
    {"sim/autopilot/heading", "Autopilot heading-hold."},
    {"sim/autopilot/altitude_hold", "Autopilot altitude-hold."},
    {"sim/autopilot/heading_up", "Autopilot heading up."},
    {"sim/autopilot/heading_down", "Autopilot heading down."},
    {"sim/engines/throttle_up", "Throttle up a bit."},
    {"sim/engines/throttle_down", "Throttle down a bit."},
    {"sim/operation/pause_toggle", "Pause the simulation."},
    {"sim/lights/beacon_lights_on", "Beacon lights on."},
    {"sim/lights/landing_lights_toggle", "Landing lights toggle."},
    {"sim/view/chase", "Chase view."},
};

constexpr StartValue kStartValues[] = {
    {"sim/joystick/has_joystick", 1},
    {"sim/cockpit2/controls/gear_handle_down", 1},
    {"sim/cockpit2/engine/actuators/throttle_ratio", 0.5},
    {"sim/cockpit2/engine/actuators/mixture_ratio", 1},
    {"sim/cockpit/electrical/battery_on", 1},
    {"sim/flightmodel/position/latitude", kStartLatitude},
    {"sim/flightmodel/position/longitude", kStartLongitude},
    {"sim/flightmodel/position/lat_ref", kStartLatitude},
    {"sim/flightmodel/position/lon_ref", kStartLongitude},
    {"sim/flightmodel/position/elevation", 1500},
    {"sim/flightmodel/position/local_y", 1500},
    {"sim/flightmodel/position/true_airspeed", 60},
    {"sim/aircraft/engine/acf_num_engines", 1},
};

int elementsOf(const DatarefRow& row, const WorldVersion& version) {
    switch (row.elements) {
    case kEngines:
        return version.engines;
    case kAxes:
        return version.joystickAxes;
    default:
        return row.elements;
    }
}

void defineDatarefs(DatarefTable& datarefs, const WorldVersion& version) {
    for (const DatarefRow& row : kDatarefs) {
        if (datarefs.Lookup(row.name) == nullptr) {
            datarefs.Define({row.name, row.type, elementsOf(row, version), row.writable, row.units,
                             row.description});
        }
    }
    for (const StartValue& start : kStartValues) {
        DatarefNumber(datarefs.Lookup(start.name)).Set(start.value);
    }
    DatarefNumber(datarefs.Lookup("sim/version/xplane_internal_version"))
        .Set(version.internalVersion);
}

} // namespace

void installDefaultWorld(Simulator& simulator, const WorldVersion& version) {
    simulator.SetVersion(version.sdkVersion);
    defineDatarefs(simulator.Datarefs(), version);
    for (const CommandRow& row : kCommands) {
        if (simulator.Commands().Lookup(row.name) == nullptr) {
            simulator.Commands().Define(row.name, row.description);
        }
    }
}

} // namespace headless
