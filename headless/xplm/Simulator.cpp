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
struct Simulator::Rooms {
    explicit Rooms(Simulator& simulator)
        : errors(simulator.context, simulator.recorder),
          features(simulator.context, simulator.recorder),
          menus(simulator.context, simulator.commands, simulator.recorder),
          drawing(simulator.context, simulator.recorder),
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
    LocalFrame frame;
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
      rooms(std::make_unique<Rooms>(*this)) {
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
    return rooms->aircraft;
}

Avionics& Simulator::Avionics() {
    return rooms->avionics;
}

Camera& Simulator::Camera() {
    return rooms->camera;
}

DrawCallbacks& Simulator::Drawing() {
    return rooms->drawing;
}

ErrorCallbacks& Simulator::Errors() {
    return rooms->errors;
}

Features& Simulator::Features() {
    return rooms->features;
}

SystemFolder& Simulator::Folder() {
    return rooms->folder;
}

LocalFrame& Simulator::Frame() {
    return rooms->frame;
}

OwnedObjects<SceneryInstance>& Simulator::Instances() {
    return rooms->instances;
}

Keyboard& Simulator::Keyboard() {
    return rooms->keyboard;
}

Maps& Simulator::Maps() {
    return rooms->maps;
}

MenuTable& Simulator::Menus() {
    return rooms->menus;
}

const Menu& Simulator::PluginsMenu() {
    return rooms->menus.PluginsMenu();
}

Objects& Simulator::Objects() {
    return rooms->objects;
}

FlightPlans& Simulator::Plans() {
    return rooms->plans;
}

Sounds& Simulator::Sounds() {
    return rooms->sounds;
}

Terrain& Simulator::Terrain() {
    return rooms->terrain;
}

Weather& Simulator::Weather() {
    return rooms->weather;
}

WidgetTree& Simulator::Widgets() {
    return rooms->widgets;
}

Windows& Simulator::Windows() {
    return rooms->windows;
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
    const LocalPosition local = rooms->frame.ToLocal(position);
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
    rooms->objects.FinishLoads();
    rooms->sounds.Advance();
    rooms->camera.Move();
    tellOfNewDatarefs();
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
        {rooms->menus.DropOf(plugin), "menus and items", "XPLMDestroyMenu"},
        {rooms->drawing.DropOf(plugin), "draw callbacks", "XPLMUnregisterDrawCallback"},
        {rooms->keyboard.DropOf(plugin), "hot keys and key sniffers", "XPLMUnregisterHotKey"},
        {rooms->avionics.DropOf(plugin), "avionics", "XPLMDestroyAvionics"},
        {rooms->widgets.DropOf(plugin), "widgets", "XPDestroyWidget"},
        {rooms->windows.DropOf(plugin), "windows", "XPLMDestroyWindow"},
        {rooms->aircraft.DropOf(plugin), "control of the planes", "XPLMReleasePlanes"},
        {rooms->camera.DropOf(plugin), "control of the camera", "XPLMDontControlCamera"},
        {rooms->sounds.DropOf(plugin), "sounds", "XPLMStopAudio"}};
    contract.LeftBehind(plugin, takenBack, true);
    const Leftover left[] = {
        {commands.ReleaseOf(plugin), "commands begun", "XPLMCommandEnd"},
        {rooms->terrain.Probes().DropOf(plugin), "terrain probes", "XPLMDestroyProbe"},
        {rooms->instances.DropOf(plugin), "instances", "XPLMDestroyInstance"},
        {rooms->objects.DropOf(plugin), "objects", "XPLMUnloadObject"},
        {rooms->maps.DropOf(plugin), "map layers", "XPLMDestroyMapLayer"}};
    contract.LeftBehind(plugin, left, false);
    rooms->errors.DropOf(plugin);
    rooms->features.DropOf(plugin);
}

void Simulator::tellOfNewDatarefs() {
    const int count = datarefs.Count();
    if (std::exchange(datarefsTold, count) == count) {
        return;
    }
    for (int i = 0; i < plugins.Count(); ++i) {
        const XPLMPluginID plugin = plugins.Nth(i);
        if (rooms->features.IsEnabledFor(plugin, Features::kDatarefNotifications)) {
            // The count is passed as the pointer itself.
            plugins.SendFromSimulator(plugin, XPLM_MSG_DATAREFS_ADDED,
                                      std::bit_cast<void*>(static_cast<intptr_t>(count)));
        }
    }
}

} // namespace headless
