#pragma once

#include <memory>
#include <string>

#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/Clock.h"
#include "headless/xplm/Contract.h"
#include "headless/xplm/IPluginObserver.h"
#include "headless/xplm/Notices.h"
#include "headless/xplm/ThreadGuard.h"
#include "headless/xplm/data/DatarefAccess.h"
#include "headless/xplm/data/DatarefTable.h"
#include "headless/xplm/menus/Menu.h"
#include "headless/xplm/plugin/PluginRegistry.h"
#include "headless/xplm/processing/FlightLoops.h"
#include "headless/xplm/utilities/CommandTable.h"
#include "headless/xplm/utilities/Log.h"

namespace headless {

class Aircraft;
class Avionics;
class Camera;
class ErrorCallbacks;
class Features;
class FlightPlans;
class Keyboard;
class Maps;
class MenuTable;
class Objects;
class Sounds;
class SystemFolder;
class Terrain;
class Weather;
class WidgetTree;
class Windows;
template <class Entry>
class CallbackList;
template <class Object>
class OwnedObjects;
struct DrawCallback;
struct SceneryInstance;
struct WorldPosition;

// The simulator's side of the plugin SDK as an ordinary object.
//
// The SDK's C functions forward to Current(). A new Simulator is the current one until it is
// destroyed; then the previous one is current again, so every test can have a fresh one. Destroy
// simulators in the reverse order of their creation. One thread: calls from others are reported.
class Simulator final {
public:
    // As the SDK reports it: 12.14.
    static constexpr int kUsualVersion = 12140;

    Simulator();
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // The newest one that still exists; without one, a simulator that lives as long as the process.
    static Simulator& Current();

    DatarefTable& Datarefs() { return datarefs; }
    DatarefAccess& Access() { return access; }
    CommandTable& Commands() { return commands; }
    FlightLoops& Loops() { return flightLoops; }
    PluginRegistry& Plugins() { return plugins; }
    PluginContext& Context() { return context; }
    headless::Log& Log() { return log; }
    headless::Notices& Notices() { return notices; }
    headless::Clock& Clock() { return clock; }
    ThreadGuard& Threads() { return threads; }
    CallRecorder& Recorder() { return recorder; }

    headless::Aircraft& Aircraft();
    headless::Avionics& Avionics();
    headless::Camera& Camera();
    CallbackList<DrawCallback>& Drawing();
    ErrorCallbacks& Errors();
    headless::Features& Features();
    SystemFolder& Folder();
    OwnedObjects<SceneryInstance>& Instances();
    headless::Keyboard& Keyboard();
    headless::Maps& Maps();
    MenuTable& Menus();
    const Menu& PluginsMenu();
    headless::Objects& Objects();
    FlightPlans& Plans();
    headless::Sounds& Sounds();
    headless::Terrain& Terrain();
    headless::Weather& Weather();
    WidgetTree& Widgets();
    headless::Windows& Windows();

    // The simulator's version: 12140 is 12.14.
    int Version() const { return version; }
    void SetVersion(int simulatorVersion) { version = simulatorVersion; }

    // Every function of the SDK calls this first. The pointer is kept.
    void Enter(const char* function) {
        if (threads.Check(function)) {
            recorder.Enter(function);
        }
    }
    // Reports once that the entered function does nothing here.
    void NotSimulated();

    // `pluginObserver` sees what plugins do from now on; null for none. Borrowed.
    void Observe(IPluginObserver* pluginObserver);

    // The plugin's side of the log; null is recorded and ignored.
    void DebugString(const char* text);
    // For functions that draw: records a refusal, because no plugin is asked to draw.
    void Draw() { recorder.Refuse(Refusal::WrongMoment, "nothing is drawn now"); }
    void Speak(const char* text) { spoken = text == nullptr ? "" : text; }
    const std::string& LastSpoken() const { return spoken; }
    int NextTexture() { return ++textures; }
    // Sends plugins the message that the scenery was loaded.
    void ReloadScenery();
    // Moves the user's aircraft, in every dataref that exists. Degrees true, metres per second.
    void PlaceUser(const WorldPosition& position, double heading, double speed);

    // One frame of simulated time: runs what is due after the previous flight model, advances the
    // time, continues held commands, then runs what is due before the next flight model.
    void RunFrame(double seconds);

    // Drops what the plugin registered and made through the SDK, as the simulator does when a
    // plugin is gone, and reports it. The commands that it created stay. XPLM_PLUGIN_XPLANE is a
    // test that plays the plugin.
    void DropRegistrations(XPLMPluginID plugin = XPLM_PLUGIN_XPLANE);

private:
    struct Parts;

    void announceNewDatarefs();

    Simulator* former;
    CallRecorder recorder;
    headless::Clock clock;
    headless::Log log;
    headless::Notices notices;
    ThreadGuard threads;
    PluginContext context;
    DatarefTable datarefs;
    DatarefAccess access;
    CommandTable commands;
    FlightLoops flightLoops;
    PluginRegistry plugins;
    Contract contract;
    std::unique_ptr<Parts> parts;
    int version = kUsualVersion;
    IPluginObserver* observer = nullptr;
    int textures = 0;
    int datarefsAnnounced = 0;
    std::string spoken;
};

} // namespace headless
