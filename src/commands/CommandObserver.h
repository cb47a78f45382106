#pragma once

#include <map>
#include <string>

#include "XPLMUtilities.h"
#include "commands/ICommandObserver.h"

// The one subscriber to simulator commands, on behalf of all protocol instances.
//
// A command's handler is registered with the simulator at the first subscription and stays
// registered, even after the last listener has left and the observer is deleted: the simulator
// drops it with the plugin. Protocols are borrowed. Main thread only.
class CommandObserver final : public ICommandObserver {
public:
    // The plain function that the simulator calls; it forwards to HandleCommand.
    using Callback = int (*)(void* command, int phase, void* refcon);

    explicit CommandObserver(Callback callback);
    CommandObserver(const CommandObserver&) = delete;
    CommandObserver& operator=(const CommandObserver&) = delete;

    void RegisterProtocolForCommandCallback(IProtocol* protocol, unsigned int id,
                                            std::string name) override;
    void UnregisterProtocolForCommandCallback(IProtocol* protocol, std::string name) override;
    void UnregisterAllForProtocol(IProtocol* protocol) override;

    // Calls every listener in ascending order of its address. Returns 1 if all of them return 1.
    int HandleCommand(void* command, int phase, void* refcon) override;

private:
    using Listeners = std::map<IProtocol*, unsigned int>;

    void subscribeToSimulator(IProtocol* protocol, unsigned int id, const std::string& name);

    std::map<std::string, XPLMCommandRef> commandsByName;
    std::map<XPLMCommandRef, Listeners> listenersByCommand;
    Callback callback;
};
