#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "XPLMUtilities.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// How often each phase of a command occurred, by phase number.
using PhaseCounts = std::array<std::size_t, 3>;

struct CommandHandler {
    XPLMCommandCallback_f callback = nullptr;
    bool before = false;
    void* refcon = nullptr;
    // The plugin that registered it.
    XPLMPluginID owner = XPLM_PLUGIN_XPLANE;

    bool operator==(const CommandHandler&) const = default;
};

// One command; its address is the handle that plugins hold.
struct Command {
    std::string name;
    std::string description;
    std::vector<CommandHandler> handlers;
    // The simulator's own effect, run between the handlers before and after it; may be empty.
    std::function<void(XPLMCommandPhase)> action;
    int held = 0;
    // The plugins that hold it.
    std::vector<XPLMPluginID> holders{};
    // All phases raised, and those that no handler before the simulator swallowed.
    PhaseCounts pressed{};
    PhaseCounts passedOn{};
};

// All commands by name. Handles stay valid for the table's life.
//
// Handlers run in the order of their registration, those before the simulator first; the first that
// returns 0 swallows the phase. Handlers of a disabled plugin are skipped. Every Begin and End
// raises its phase, nested ones too; a command is held until it gets as many Ends as Begins.
// Handlers may come and go during dispatch.
class CommandTable final {
public:
    CommandTable(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), recorder(callRecorder) {}
    CommandTable(const CommandTable&) = delete;
    CommandTable& operator=(const CommandTable&) = delete;

    // Host side. A name that is already defined keeps its handle and gets the description.
    Command& Define(const std::string& name, const std::string& description);
    // Null for an unknown name.
    Command* Lookup(std::string_view name) const;
    std::vector<std::string> Names() const;
    // Raises the continue phase of every held command; once per frame.
    void ContinueHeld();
    // Drops the handlers of a plugin that is gone, and returns how many it had.
    std::size_t DropOf(XPLMPluginID plugin);
    // Counts and forgets the plugin's Begins without an End; those commands stay held.
    std::size_t ReleaseOf(XPLMPluginID plugin);

    // Plugin side. Null or foreign handles are recorded and ignored.
    XPLMCommandRef Find(const char* name);
    XPLMCommandRef Create(const char* name, const char* description);
    void RegisterHandler(XPLMCommandRef handle, XPLMCommandCallback_f callback, bool before,
                         void* refcon);
    void UnregisterHandler(XPLMCommandRef handle, XPLMCommandCallback_f callback, bool before,
                           void* refcon);
    void Begin(XPLMCommandRef handle);
    void End(XPLMCommandRef handle);
    void Once(XPLMCommandRef handle);

private:
    Command* resolve(XPLMCommandRef handle, const char* function);
    void raise(Command& command, XPLMCommandPhase phase);
    bool runHandlers(Command& command, XPLMCommandPhase phase, bool before);

    PluginContext& context;
    CallRecorder& recorder;
    std::map<std::string, std::unique_ptr<Command>, std::less<>> commands;
    std::map<const void*, Command*> byHandle;
};

} // namespace headless
