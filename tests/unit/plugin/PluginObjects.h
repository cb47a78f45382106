#pragma once

#include "common/SimStateInformation.h"
#include "network/NetworkResources.h"
#include "network/TcpServer.h"
#include "plugin/PluginGlobals.h"
#include "plugin/XPlanePlugin.h"
#include "support/FakeCommandObserver.h"
#include "support/FakeDatarefProvider.h"
#include "support/FakeProtocol.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"

// A plugin object among fakes, for the plain functions that find it through globalPlugin. It is
// global only after Publish(), and never after the object is gone.
struct PluginObjects {
    explicit PluginObjects(XPlanePlugin::FlightLoopCallback callback = askForTheNextFlightLoop)
        : flightLoop(callback) {}
    ~PluginObjects() { globalPlugin = nullptr; }
    PluginObjects(const PluginObjects&) = delete;
    PluginObjects& operator=(const PluginObjects&) = delete;

    void Publish() { globalPlugin = &plugin; }

    static float askForTheNextFlightLoop(float /*sinceLastCall*/, float /*sinceLastLoop*/,
                                         int /*counter*/, void* /*refcon*/) {
        return -1.0F;
    }

    RecordingLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
    FakeCommandObserver observer;
    FakeDatarefProvider provider;
    SimStateInformation simState;
    NetworkResources resources{&utilities, &logger};
    TcpServer server{&logger, &utilities, &factory};
    XPlanePlugin::FlightLoopCallback flightLoop;
    XPlanePlugin plugin{flightLoop, &observer, &resources, &server, &provider, &simState, &logger};
};
