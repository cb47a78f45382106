#pragma once

#include "XPLMDataAccess.h"

class ICommandObserver;
class IDatarefProvider;
class ILoggingService;
class NetworkResources;
class SimStateInformation;
class TcpServer;

// What the plugin does at start, at stop, on messages and in every frame.
//
// All collaborators are borrowed and outlive the object. Main thread only. The server keeps running
// while the plugin is disabled.
class XPlanePlugin final {
public:
    using FlightLoopCallback = float (*)(float elapsedSinceLastCall,
                                         float elapsedSinceLastFlightLoop, int counter,
                                         void* refcon);

    // `flightLoopCallback` is the plain function that the simulator is given.
    XPlanePlugin(FlightLoopCallback flightLoopCallback, ICommandObserver* commandObserver,
                 NetworkResources* networkResources, TcpServer* tcpServer,
                 IDatarefProvider* datarefProvider, SimStateInformation* simState,
                 ILoggingService* loggingService);
    XPlanePlugin(const XPlanePlugin&) = delete;
    XPlanePlugin& operator=(const XPlanePlugin&) = delete;

    // Fills in the simulator's buffers of 256 bytes each and starts serving. Returns 1, or 0 if the
    // network or memory is not available; nothing is registered with the simulator then.
    int XPluginStart(char* outName, char* outSignature, char* outDescription);
    void XPluginStop();
    // Always 1.
    int XPluginEnable();
    void XPluginDisable();
    // Follows the user's aircraft: loaded, unloaded, exchanged.
    void XPluginReceiveMessage(int from, long message, void* param);

    // One frame. Returns -1.0: to be called again on the next flight loop.
    float FlightLoop(float elapsedSinceLastCall, float elapsedSinceLastFlightLoop, int counter,
                     void* refcon);
    int CommandHandler(void* command, int phase, void* refcon);

    IDatarefProvider* GetDatarefProvider();

private:
    void appendMenuItem();
    void registerFlightLoop();
    void unregisterFlightLoop();
    void registerOwnDatarefs();
    void takeBackStart();
    void planeLoaded();

    bool flightLoopRegistered = false;
    SimStateInformation* simState;
    FlightLoopCallback flightLoopCallback;
    ICommandObserver* commandObserver;
    NetworkResources* networkResources;
    TcpServer* tcpServer;
    IDatarefProvider* datarefProvider;
    ILoggingService* loggingService;
    // Nothing here reads or writes their values: clients, aircraft and other plugins share them
    // through the simulator.
    XPLMDataRef autopilotExternalControl = nullptr;
    XPLMDataRef autopilotTriggerDisable = nullptr;
    XPLMDataRef forceScaleFactorActive = nullptr;
    XPLMDataRef forceScaleFactorValue = nullptr;
};
