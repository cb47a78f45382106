#include "plugin/XPlanePlugin.h"

#include <cstdio>
#include <exception>
#include <string>

#include "XPLMMenus.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "commands/ICommandObserver.h"
#include "common/ILoggingService.h"
#include "common/SimStateInformation.h"
#include "datarefs/IDatarefProvider.h"
#include "network/NetworkResources.h"
#include "network/TcpServer.h"

namespace {

// The version is the project's in CMake.
constexpr const char* kName = "XPlaneTCPOrvaneLin v" ORVANE_VERSION;
// Tools find the version in the file by this text, without loading it. The simulator gets a pointer
// to it, so it is whole there; a compiler may cut up a text that is copied.
constexpr const char* kMenuText = "XPlane10Orvane v" ORVANE_VERSION;
constexpr const char* kSignature = "kyr.flight.xplaneorvane.plugin";
constexpr const char* kDescription =
    "Reads and writes X-Plane datarefs from external programs using TCP sockets.";

// The simulator's size for each of the three texts of a start.
constexpr std::size_t kStartTextSize = 256;

// Counted in flight loops, as the minus sign says.
constexpr float kFirstFlightLoop = -2.0F;
constexpr float kNextFlightLoop = -1.0F;

// Elements of the active flags and of the values. Both are int arrays.
constexpr std::size_t kForceScaleFactors = 4;

} // namespace

XPlanePlugin::XPlanePlugin(FlightLoopCallback flightLoopCallback, ICommandObserver* commandObserver,
                           NetworkResources* networkResources, TcpServer* tcpServer,
                           IDatarefProvider* datarefProvider, SimStateInformation* simState,
                           ILoggingService* loggingService)
    : simState(simState),
      flightLoopCallback(flightLoopCallback),
      commandObserver(commandObserver),
      networkResources(networkResources),
      tcpServer(tcpServer),
      datarefProvider(datarefProvider),
      loggingService(loggingService) {}

int XPlanePlugin::XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::snprintf(outName, kStartTextSize, "%s", kName);
    std::snprintf(outSignature, kStartTextSize, "%s", kSignature);
    std::snprintf(outDescription, kStartTextSize, "%s", kDescription);
    appendMenuItem();
    if (!networkResources->Init()) {
        return 0;
    }
    if (!tcpServer->Init()) {
        return 0;
    }
    try {
        registerFlightLoop();
        datarefProvider->ParseConfig();
        registerOwnDatarefs();
    } catch (const std::exception& error) {
        takeBackStart();
        loggingService->Log(LogLevelWarning,
                            std::string("Warning@XPlanePlugin::XPluginStart : ") + error.what());
        return 0;
    }
    return 1;
}

// The simulator unloads a plugin that refuses to start and never calls it again.
void XPlanePlugin::takeBackStart() {
    datarefProvider->UnregisterAll();
    autopilotExternalControl = nullptr;
    autopilotTriggerDisable = nullptr;
    forceScaleFactorActive = nullptr;
    forceScaleFactorValue = nullptr;
    unregisterFlightLoop();
    tcpServer->Cleanup();
    networkResources->Cleanup();
}

// Without a handler: the item only shows the version.
void XPlanePlugin::appendMenuItem() {
    XPLMAppendMenuItem(XPLMFindPluginsMenu(), kMenuText, nullptr, 1);
}

void XPlanePlugin::registerFlightLoop() {
    if (!flightLoopRegistered) {
        XPLMRegisterFlightLoopCallback(flightLoopCallback, kFirstFlightLoop, nullptr);
        flightLoopRegistered = true;
    }
}

void XPlanePlugin::unregisterFlightLoop() {
    if (flightLoopRegistered) {
        XPLMUnregisterFlightLoopCallback(flightLoopCallback, nullptr);
        flightLoopRegistered = false;
    }
}

void XPlanePlugin::registerOwnDatarefs() {
    if (autopilotExternalControl == nullptr) {
        autopilotExternalControl = datarefProvider->RegisterInt("kyr/autopilot_external_control");
    }
    if (autopilotTriggerDisable == nullptr) {
        autopilotTriggerDisable = datarefProvider->RegisterInt("kyr/autopilot_trigger_disable");
    }
    if (forceScaleFactorActive == nullptr) {
        forceScaleFactorActive = datarefProvider->RegisterIntArray(
            kForceScaleFactors, "kyr/external_forcescalefactor_active");
    }
    if (forceScaleFactorValue == nullptr) {
        forceScaleFactorValue = datarefProvider->RegisterIntArray(
            kForceScaleFactors, "kyr/external_forcescalefactor_value");
    }
}

void XPlanePlugin::XPluginStop() {
    // Only missing handles are unregistered, which releases nothing: the simulator drops the others
    // with the plugin.
    for (const XPLMDataRef handle : {autopilotExternalControl, autopilotTriggerDisable,
                                     forceScaleFactorActive, forceScaleFactorValue}) {
        if (handle == nullptr) {
            XPLMUnregisterDataAccessor(nullptr);
        }
    }
    unregisterFlightLoop();
    tcpServer->Cleanup();
    networkResources->Cleanup();
}

int XPlanePlugin::XPluginEnable() {
    return 1;
}

void XPlanePlugin::XPluginDisable() {}

void XPlanePlugin::XPluginReceiveMessage(int /*from*/, long message, void* param) {
    const bool aboutUsersAircraft = param == nullptr;
    switch (message) {
    case XPLM_MSG_AIRPORT_LOADED:
    case XPLM_MSG_SCENERY_LOADED:
        planeLoaded();
        break;
    case XPLM_MSG_PLANE_LOADED:
    case XPLM_MSG_LIVERY_LOADED:
        if (aboutUsersAircraft) {
            planeLoaded();
        }
        break;
    case XPLM_MSG_PLANE_UNLOADED:
        if (aboutUsersAircraft) {
            simState->SetPlaneLoaded(false);
        }
        break;
    default:
        break;
    }
}

void XPlanePlugin::planeLoaded() {
    simState->SetPlaneLoaded(true);
    simState->ReadPlaneId();
}

float XPlanePlugin::FlightLoop(float /*elapsedSinceLastCall*/, float /*elapsedSinceLastFlightLoop*/,
                               int /*counter*/, void* /*refcon*/) {
    datarefProvider->ProcessFlightLoop();
    tcpServer->ProcessEvents();
    return kNextFlightLoop;
}

int XPlanePlugin::CommandHandler(void* command, int phase, void* refcon) {
    return commandObserver->HandleCommand(command, phase, refcon);
}

IDatarefProvider* XPlanePlugin::GetDatarefProvider() {
    return datarefProvider;
}
