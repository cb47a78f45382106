// The five functions that the simulator looks up in the plugin, and the wiring of all long-lived
// objects. Each object is built with the ones before it and deleted before them.

#include <unistd.h>

#include <utility>

#include "XPLMDefs.h"
#include "commands/CommandObserver.h"
#include "common/LogMessage.h"
#include "common/LoggingService.h"
#include "common/SimStateInformation.h"
#include "common/Utilities.h"
#include "datarefs/DatarefProvider.h"
#include "network/NetworkResources.h"
#include "network/TcpServer.h"
#include "plugin/DatarefAccessors.h"
#include "plugin/ExceptionBarrier.h"
#include "plugin/PluginCallbacks.h"
#include "plugin/PluginGlobals.h"
#include "plugin/XPlanePlugin.h"
#include "protocols/ProtocolFactory.h"

namespace {

constexpr int kStarted = 1;
constexpr int kRefused = 0;

// In the simulator's working directory; only its existence counts.
constexpr const char* kVerboseMarkerFile = "XPLANEORVANE_VERBOSE";

bool fileExists(const char* path) {
    // Not stat(): that name binds to a symbol that older systems do not have.
    return ::access(path, F_OK) == 0;
}

void buildObjects() {
    simStateInformation = new SimStateInformation();
    loggingService = new LoggingService();
    loggingService->SetLogLevel(fileExists(kVerboseMarkerFile) ? LogLevelVerbose : LogLevelWarning);
    utils = new Utilities();
    commandObserver = new CommandObserver(MyCommandCallBack);
    logIfEnabled(loggingService, LogLevelVerbose, "PluginStart");
    datarefProvider = new DatarefProvider(loggingService, GetInt, SetInt, GetFloat, SetFloat,
                                          GetDouble, SetDouble, GetIntArray, SetIntArray,
                                          GetFloatArray, SetFloatArray, GetByteArray, SetByteArray);
    protocolFactory = new ProtocolFactory(simStateInformation, commandObserver, loggingService,
                                          utils, datarefProvider);
    networkResources = new NetworkResources(utils, loggingService);
    tcpServer = new TcpServer(loggingService, utils, protocolFactory);
    globalPlugin =
        new XPlanePlugin(MyFlightLoopCallback, commandObserver, networkResources, tcpServer,
                         datarefProvider, simStateInformation, loggingService);
}

// Clears the pointer first: the simulator may still call an accessor or a command handler.
template <typename Object>
void release(Object*& pointer) {
    delete std::exchange(pointer, nullptr);
}

void deleteObjects() {
    release(globalPlugin);
    release(datarefProvider);
    release(tcpServer);
    release(networkResources);
    release(protocolFactory);
    release(commandObserver);
    release(loggingService);
    release(utils);
    release(simStateInformation);
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    return withExceptionBarrier(kRefused, [&] {
        if (globalPlugin == nullptr) {
            // A start that ran out of memory may have left some.
            deleteObjects();
            buildObjects();
        }
        return globalPlugin->XPluginStart(outName, outSignature, outDescription);
    });
}

PLUGIN_API void XPluginStop() {
    withExceptionBarrier([] {
        if (globalPlugin != nullptr) {
            globalPlugin->XPluginStop();
            deleteObjects();
        }
    });
}

PLUGIN_API int XPluginEnable() {
    return withExceptionBarrier(kStarted, [] {
        return globalPlugin == nullptr ? kStarted : globalPlugin->XPluginEnable();
    });
}

PLUGIN_API void XPluginDisable() {
    withExceptionBarrier([] {
        if (globalPlugin != nullptr) {
            globalPlugin->XPluginDisable();
        }
    });
}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID from, int message, void* param) {
    withExceptionBarrier([&] {
        if (globalPlugin != nullptr) {
            globalPlugin->XPluginReceiveMessage(from, message, param);
        }
    });
}
