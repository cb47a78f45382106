#pragma once

#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/Clock.h"
#include "headless/xplm/data/DatarefAccess.h"
#include "headless/xplm/data/DatarefTable.h"
#include "headless/xplm/menus/Menu.h"
#include "headless/xplm/plugin/PluginRegistry.h"
#include "headless/xplm/processing/FlightLoops.h"
#include "headless/xplm/utilities/CommandTable.h"
#include "headless/xplm/utilities/Log.h"

namespace headless {

// The simulator's side of the plugin SDK as an ordinary object.
//
// The SDK's C functions forward to Current(). Making a Simulator makes it the current one until it
// is destroyed, then the former is again, so every test can have a fresh one; simulators are
// destroyed in the reverse order of their making. One thread.
class Simulator final {
public:
    Simulator();
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // The last one made that still exists; when there is none, one that lives with the process.
    static Simulator& Current();

    DatarefTable& Datarefs() { return datarefs; }
    DatarefAccess& Access() { return access; }
    CommandTable& Commands() { return commands; }
    FlightLoops& Loops() { return flightLoops; }
    PluginRegistry& Plugins() { return plugins; }
    Menu& PluginsMenu() { return menu; }
    headless::Log& Log() { return log; }
    const headless::Clock& Clock() const { return clock; }
    CallRecorder& Recorder() { return recorder; }

    // The plugin's side of the log; null is recorded and ignored.
    void DebugString(const char* text);

    // One frame of simulated time: held commands continue, then the flight loops that are due run.
    void RunFrame(double seconds);

    // Drops the datarefs, command handlers and flight loops that were registered through the SDK,
    // as the simulator does when a plugin is gone. The commands that it created stay.
    void DropRegistrations();

private:
    Simulator* former;
    CallRecorder recorder;
    headless::Clock clock;
    headless::Log log;
    DatarefTable datarefs;
    DatarefAccess access;
    CommandTable commands;
    FlightLoops flightLoops;
    PluginRegistry plugins;
    Menu menu;
};

} // namespace headless
