#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "orvane/headless/Export.h"

// The five entry points of a plugin whose sources are a part of the program; see EntryPoints.
extern "C" {
int XPluginStart(char* name, char* signature, char* description);
void XPluginStop(void);
int XPluginEnable(void);
void XPluginDisable(void);
void XPluginReceiveMessage(int from, int message, void* parameter);
}

namespace orvane::headless {

// A plugin cannot be loaded, refuses, or it is not the time for a step. what() is one line.
class ORVANE_HEADLESS_API PluginError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What the simulator calls a plugin by.
struct EntryPoints {
    int (*start)(char*, char*, char*) = nullptr;
    void (*stop)() = nullptr;
    int (*enable)() = nullptr;
    void (*disable)() = nullptr;
    void (*receiveMessage)(int, int, void*) = nullptr;

    // Those of the plugin whose sources are linked to this program.
    static EntryPoints ofThisProgram() {
        return {&XPluginStart, &XPluginStop, &XPluginEnable, &XPluginDisable,
                &XPluginReceiveMessage};
    }
};

// A plugin in the simulator, which owns it. As long as it is not enabled the simulator does not
// call it: its flight loops wait, its datarefs read 0, and messages pass it by.
class ORVANE_HEADLESS_API Plugin final {
public:
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // What it said of itself at its start.
    std::string name() const;
    std::string signature() const;
    std::string description() const;

    bool isEnabled() const;
    // Throws PluginError when the plugin refuses or is enabled already.
    void enable();
    // Does nothing when it is disabled already.
    void disable();

    // From the simulator, to this plugin alone; dropped while it is disabled. Small numbers, such
    // as the index of an aircraft, are passed as the pointer itself.
    void send(int message, void* parameter = nullptr);
    void send(int message, std::intptr_t number);

private:
    friend class Simulator;
    struct State;

    explicit Plugin(std::unique_ptr<State> pluginState);

    std::unique_ptr<State> state;
};

} // namespace orvane::headless
