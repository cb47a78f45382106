#pragma once

#include <utility>

#include "commands/CommandObserver.h"
#include "common/SimStateInformation.h"
#include "datarefs/DatarefProvider.h"
#include "headless/xplm/Simulator.h"
#include "network/NetworkResources.h"
#include "network/TcpServer.h"
#include "plugin/DatarefAccessors.h"
#include "plugin/PluginCallbacks.h"
#include "plugin/PluginGlobals.h"
#include "plugin/XPlanePlugin.h"
#include "protocols/ProtocolFactory.h"

// A simulator with the plugin's real objects, wired but not started: nothing listens, and nothing
// is registered. The test chooses the logger and the utilities.
//
// Several worlds may exist: the simulator and its callbacks belong to the last one, which must be
// destroyed first.
template <class Logger, class UtilitiesClass>
class PluginWorld {
public:
    template <class... LoggerArguments>
    explicit PluginWorld(LoggerArguments&&... loggerArguments)
        : logger(std::forward<LoggerArguments>(loggerArguments)...) {
        globalPlugin = &plugin;
        simulator.Log().KeepInMemory(false);
        simulator.Datarefs().Define(
            {.name = "sim/aircraft/view/acf_descrip", .types = xplmType_Data, .elements = 260});
    }
    ~PluginWorld() { globalPlugin = former; }
    PluginWorld(const PluginWorld&) = delete;
    PluginWorld& operator=(const PluginWorld&) = delete;

    headless::Simulator simulator;
    Logger logger;
    UtilitiesClass utilities;
    SimStateInformation simState;
    CommandObserver observer{MyCommandCallBack};
    DatarefProvider provider{&logger,       GetInt,       SetInt,      GetFloat,    SetFloat,
                             GetDouble,     SetDouble,    GetIntArray, SetIntArray, GetFloatArray,
                             SetFloatArray, GetByteArray, SetByteArray};
    ProtocolFactory factory{&simState, &observer, &logger, &utilities, &provider};
    NetworkResources resources{&utilities, &logger};
    TcpServer server{&logger, &utilities, &factory};
    XPlanePlugin plugin{
        MyFlightLoopCallback, &observer, &resources, &server, &provider, &simState, &logger};

private:
    XPlanePlugin* former = globalPlugin;
};
