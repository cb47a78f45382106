#pragma once

#include "headless/CallRecorder.h"
#include "headless/Clock.h"
#include "headless/CommandTable.h"
#include "headless/DatarefAccess.h"
#include "headless/DatarefTable.h"
#include "headless/FlightLoops.h"
#include "headless/Log.h"
#include "headless/Menu.h"
#include "headless/PluginRegistry.h"

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
