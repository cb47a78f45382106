#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMDefs.h"
#include "headless/xplm/Simulator.h"
#include "plugin/PluginGlobals.h"
#include "support/TemporaryDirectory.h"

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription);
PLUGIN_API void XPluginStop();
PLUGIN_API int XPluginEnable();
PLUGIN_API void XPluginDisable();
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID from, int message, void* param);

// The entry points as the simulator calls them, with the plugin's real objects, in a simulator with
// an empty folder.
class EntryPointsTest : public testing::Test {
protected:
    static constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

    EntryPointsTest() {
        directory.MakePluginsFolder();
        simulator.Recorder().Enable();
    }
    ~EntryPointsTest() override { XPluginStop(); }

    int start() { return XPluginStart(name, signature, description); }

    // What the plugin did to the simulator: "function(arguments)".
    std::vector<std::string> calls() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().Calls()) {
            found.push_back(call.function + "(" + call.arguments + ")");
        }
        return found;
    }

    std::size_t nullUnregistrations() { return simulator.Recorder().NullHandleCalls(); }

    static std::vector<const void*> allGlobals() {
        return {globalPlugin,    simStateInformation, loggingService,   utils,    commandObserver,
                datarefProvider, protocolFactory,     networkResources, tcpServer};
    }

    TemporaryDirectory directory;
    headless::Simulator simulator;
    char name[256] = {};
    char signature[256] = {};
    char description[256] = {};
};
