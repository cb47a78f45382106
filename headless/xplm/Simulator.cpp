#include "headless/xplm/Simulator.h"

#include <bit>
#include <utility>

#include "headless/xplm/FunctionTable.h"
#include "headless/xplm/camera/Camera.h"
#include "headless/xplm/display/Avionics.h"
#include "headless/xplm/display/DrawCallbacks.h"
#include "headless/xplm/display/Keyboard.h"
#include "headless/xplm/display/Windows.h"
#include "headless/xplm/graphics/LocalFrame.h"
#include "headless/xplm/instance/Instances.h"
#include "headless/xplm/map/Maps.h"
#include "headless/xplm/menus/MenuTable.h"
#include "headless/xplm/navigation/FlightPlan.h"
#include "headless/xplm/planes/Aircraft.h"
#include "headless/xplm/plugin/Features.h"
#include "headless/xplm/scenery/Objects.h"
#include "headless/xplm/scenery/Terrain.h"
#include "headless/xplm/sound/Sounds.h"
#include "headless/xplm/utilities/ErrorCallbacks.h"
#include "headless/xplm/utilities/SystemFolder.h"
#include "headless/xplm/weather/Weather.h"
#include "headless/xplm/widgets/WidgetTree.h"

namespace headless {

namespace {

Simulator* current = nullptr;

} // namespace

// Parts that few plugins use, kept apart so that Simulator.h does not include their headers.
struct Simulator::Parts {
    explicit Parts(Simulator& simulator)
        : errors(simulator.context, simulator.recorder),
          features(simulator.context, simulator.recorder),
          menus(simulator.context, simulator.commands, simulator.recorder),
          drawing(simulator.context, simulator.recorder, "draw callback"),
          windows(simulator.context, simulator.recorder),
          keyboard(windows, simulator.context, simulator.recorder),
          avionics(simulator.context, simulator.recorder),
          widgets(windows, simulator.context, simulator.recorder),
          aircraft(simulator.plugins, simulator.context, folder, simulator.recorder),
          terrain(simulator.context, simulator.recorder),
          objects(folder, simulator.context, simulator.recorder),
          instances(simulator.context, simulator.recorder, "instance"),
          camera(simulator.context),
          maps(simulator.context, simulator.recorder),
          sounds(simulator.clock, simulator.context, simulator.recorder) {}

    SystemFolder folder;
    ErrorCallbacks errors;
    headless::Features features;
    MenuTable menus;
    DrawCallbacks drawing;
    headless::Windows windows;
    headless::Keyboard keyboard;
    headless::Avionics avionics;
    WidgetTree widgets;
    headless::Aircraft aircraft;
    FlightPlans plans;
    headless::Terrain terrain;
    headless::Objects objects;
    headless::Instances instances;
    headless::Camera camera;
    headless::Maps maps;
    headless::Sounds sounds;
    headless::Weather weather;
};

Simulator::Simulator()
    : former(current),
      notices(log),
      threads(notices),
      datarefs(context, recorder),
      access(datarefs, recorder),
      commands(context, recorder),
      flightLoops(clock, context, recorder),
      plugins(context, recorder),
      contract(notices, context, plugins),
      parts(std::make_unique<Parts>(*this)) {
    recorder.AddObserver([this](const RefusedCall& refused) { contract.Refused(refused); });
    current = this;
}

Simulator::~Simulator() {
    current = former;
}

Simulator& Simulator::Current() {
    if (current == nullptr) {
        // Never destroyed: plugins may still call while the process ends.
        static auto* const processWide = new Simulator;
        current = processWide;
    }
    return *current;
}

Aircraft& Simulator::Aircraft() {
    return parts->aircraft;
}

Avionics& Simulator::Avionics() {
    return parts->avionics;
}

Camera& Simulator::Camera() {
    return parts->camera;
}

CallbackList<DrawCallback>& Simulator::Drawing() {
    return parts->drawing;
}

ErrorCallbacks& Simulator::Errors() {
    return parts->errors;
}

Features& Simulator::Features() {
    return parts->features;
}

SystemFolder& Simulator::Folder() {
    return parts->folder;
}

OwnedObjects<SceneryInstance>& Simulator::Instances() {
    return parts->instances;
}

Keyboard& Simulator::Keyboard() {
    return parts->keyboard;
}

Maps& Simulator::Maps() {
    return parts->maps;
}

MenuTable& Simulator::Menus() {
    return parts->menus;
}

const Menu& Simulator::PluginsMenu() {
    return parts->menus.PluginsMenu();
}

Objects& Simulator::Objects() {
    return parts->objects;
}

FlightPlans& Simulator::Plans() {
    return parts->plans;
}

Sounds& Simulator::Sounds() {
    return parts->sounds;
}

Terrain& Simulator::Terrain() {
    return parts->terrain;
}

Weather& Simulator::Weather() {
    return parts->weather;
}

WidgetTree& Simulator::Widgets() {
    return parts->widgets;
}

Windows& Simulator::Windows() {
    return parts->windows;
}

void Simulator::NotSimulated() {
    const std::string function = recorder.Entered();
    const SdkFunction* const known = findSdkFunction(function);
    notices.Once(function + " is not simulated and answers 0" +
                 (known == nullptr ? "" : ": " + std::string(known->difference)));
}

void Simulator::Observe(IPluginObserver* pluginObserver) {
    observer = pluginObserver;
    threads.Observe(pluginObserver);
    context.Observe(pluginObserver);
}

void Simulator::DebugString(const char* text) {
    if (text == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMDebugString", "text");
        return;
    }
    recorder.Record("XPLMDebugString", nullptr, text);
    log.Write(text);
    if (observer != nullptr && threads.IsOnSimulatorThread()) {
        observer->Logged(text);
    }
}

void Simulator::ReloadScenery() {
    plugins.Broadcast(XPLM_MSG_SCENERY_LOADED, nullptr);
}

void Simulator::PlaceUser(const WorldPosition& position, double heading, double speed) {
    const LocalPosition local = toLocal(position);
    const std::pair<const char*, double> values[] = {
        {"sim/flightmodel/position/latitude", position.latitude},
        {"sim/flightmodel/position/longitude", position.longitude},
        {"sim/flightmodel/position/elevation", position.altitude},
        {"sim/flightmodel/position/local_x", local.x},
        {"sim/flightmodel/position/local_y", local.y},
        {"sim/flightmodel/position/local_z", local.z},
        {"sim/flightmodel/position/psi", heading},
        {"sim/flightmodel/position/true_airspeed", speed},
    };
    for (const auto& [name, value] : values) {
        if (const Dataref* dataref = datarefs.Lookup(name)) {
            dataref->Value().SetDouble(value);
        }
    }
}

void Simulator::RunFrame(double seconds) {
    if (observer != nullptr) {
        observer->FrameBegan();
    }
    flightLoops.Run(xplm_FlightLoop_Phase_AfterFlightModel, seconds);
    parts->objects.FinishLoads();
    parts->sounds.Advance();
    parts->camera.Move();
    announceNewDatarefs();
    clock.Advance(seconds);
    commands.ContinueHeld();
    flightLoops.Run(xplm_FlightLoop_Phase_BeforeFlightModel, seconds);
    if (observer != nullptr) {
        observer->FrameEnded(seconds);
    }
}

void Simulator::DropRegistrations(XPLMPluginID plugin) {
    const Leftover takenBack[] = {
        {flightLoops.DropOf(plugin), "flight loops", "XPLMUnregisterFlightLoopCallback"},
        {commands.DropOf(plugin), "command handlers", "XPLMUnregisterCommandHandler"},
        {datarefs.DropOf(plugin), "datarefs", "XPLMUnregisterDataAccessor"},
        {parts->menus.DropOf(plugin), "menus and items", "XPLMDestroyMenu"},
        {parts->drawing.DropOf(plugin), "draw callbacks", "XPLMUnregisterDrawCallback"},
        {parts->keyboard.DropOf(plugin), "hot keys and key sniffers", "XPLMUnregisterHotKey"},
        {parts->avionics.DropOf(plugin), "avionics", "XPLMDestroyAvionics"},
        {parts->widgets.DropOf(plugin), "widgets", "XPDestroyWidget"},
        {parts->windows.DropOf(plugin), "windows", "XPLMDestroyWindow"},
        {parts->aircraft.DropOf(plugin), "control of the planes", "XPLMReleasePlanes"},
        {parts->camera.DropOf(plugin), "control of the camera", "XPLMDontControlCamera"},
        {parts->sounds.DropOf(plugin), "sounds", "XPLMStopAudio"}};
    contract.LeftBehind(plugin, takenBack, true);
    const Leftover left[] = {
        {commands.ReleaseOf(plugin), "commands begun", "XPLMCommandEnd"},
        {parts->terrain.Probes().DropOf(plugin), "terrain probes", "XPLMDestroyProbe"},
        {parts->instances.DropOf(plugin), "instances", "XPLMDestroyInstance"},
        {parts->objects.DropOf(plugin), "objects", "XPLMUnloadObject"},
        {parts->maps.DropOf(plugin), "map layers", "XPLMDestroyMapLayer"}};
    contract.LeftBehind(plugin, left, false);
    parts->errors.DropOf(plugin);
    parts->features.DropOf(plugin);
}

void Simulator::announceNewDatarefs() {
    const int count = datarefs.Count();
    if (std::exchange(datarefsAnnounced, count) == count) {
        return;
    }
    for (int i = 0; i < plugins.Count(); ++i) {
        const XPLMPluginID plugin = plugins.Nth(i);
        if (parts->features.IsEnabledFor(plugin, Features::kDatarefNotifications)) {
            // The count is passed as the pointer itself.
            plugins.SendFromSimulator(plugin, XPLM_MSG_DATAREFS_ADDED,
                                      std::bit_cast<void*>(static_cast<intptr_t>(count)));
        }
    }
}

} // namespace headless
