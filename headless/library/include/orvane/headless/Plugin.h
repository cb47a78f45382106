#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "orvane/headless/Export.h"

// The five entry points of a plugin whose sources are part of the program; see EntryPoints.
extern "C" {
int XPluginStart(char* name, char* signature, char* description);
void XPluginStop(void);
int XPluginEnable(void);
void XPluginDisable(void);
void XPluginReceiveMessage(int from, int message, void* parameter);
}

namespace orvane::headless {

// A plugin cannot be loaded, refuses, or a step is out of order. what() is one line.
class ORVANE_HEADLESS_API PluginError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The functions through which the simulator calls a plugin.
struct EntryPoints {
    int (*start)(char*, char*, char*) = nullptr;
    void (*stop)() = nullptr;
    int (*enable)() = nullptr;
    void (*disable)() = nullptr;
    void (*receiveMessage)(int, int, void*) = nullptr;

    // The entry points of the plugin whose sources are linked into this program.
    static EntryPoints ofThisProgram() {
        return {&XPluginStart, &XPluginStop, &XPluginEnable, &XPluginDisable,
                &XPluginReceiveMessage};
    }
};

// A plugin in the simulator, which owns it. While the plugin is not enabled, the simulator does not
// call it: its flight loops wait, its datarefs read 0, and it gets no messages.
class ORVANE_HEADLESS_API Plugin final {
public:
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // As the plugin gave them at its start.
    std::string name() const;
    std::string signature() const;
    std::string description() const;

    bool isEnabled() const;
    // Throws PluginError if the plugin refuses or is enabled already.
    void enable();
    // Does nothing if the plugin is disabled already.
    void disable();

    // Sends a message from the simulator to this plugin alone; dropped while it is disabled. Small
    // numbers, such as the index of an aircraft, are passed as the pointer itself.
    void send(int message, void* parameter = nullptr);
    void send(int message, std::intptr_t number);

private:
    friend class Simulator;
    struct State;

    explicit Plugin(std::unique_ptr<State> pluginState);

    std::unique_ptr<State> state;
};

} // namespace orvane::headless
