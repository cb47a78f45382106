#include "commands/CommandObserver.h"

#include "network/IProtocol.h"

namespace {

constexpr int kBeforeSimulator = 1;

XPLMCommandRef findOrCreateCommand(const std::string& name) {
    const XPLMCommandRef command = XPLMFindCommand(name.c_str());
    return command != nullptr ? command : XPLMCreateCommand(name.c_str(), name.c_str());
}

} // namespace

CommandObserver::CommandObserver(Callback callback) : callback(callback) {}

void CommandObserver::RegisterProtocolForCommandCallback(IProtocol* protocol, unsigned int id,
                                                         std::string name) {
    const auto known = commandsByName.find(name);
    if (known == commandsByName.end()) {
        subscribeToSimulator(protocol, id, name);
        return;
    }
    const auto found = listenersByCommand.find(known->second);
    if (found == listenersByCommand.end()) {
        listenersByCommand.emplace(known->second, Listeners{});
        return;
    }
    found->second.emplace(protocol, id);
}

void CommandObserver::subscribeToSimulator(IProtocol* protocol, unsigned int id,
                                           const std::string& name) {
    const XPLMCommandRef command = findOrCreateCommand(name);
    // Under a second name for the same command the handler would be called twice per phase.
    if (!listenersByCommand.contains(command)) {
        XPLMRegisterCommandHandler(command, callback, kBeforeSimulator, nullptr);
    }
    commandsByName.emplace(name, command);
    listenersByCommand[command].emplace(protocol, id);
}

void CommandObserver::UnregisterProtocolForCommandCallback(IProtocol* protocol, std::string name) {
    const auto known = commandsByName.find(name);
    if (known == commandsByName.end()) {
        return;
    }
    const XPLMCommandRef command = known->second;
    const auto found = listenersByCommand.find(command);
    if (found == listenersByCommand.end() || found->second.erase(protocol) == 0) {
        return;
    }
    // This asks about all commands, and entries are never removed: a registered name stays known,
    // and registering it again does not call the simulator.
    if (listenersByCommand.empty()) {
        XPLMUnregisterCommandHandler(command, callback, kBeforeSimulator, nullptr);
        commandsByName.erase(known);
    }
}

void CommandObserver::UnregisterAllForProtocol(IProtocol* protocol) {
    for (auto& [command, listeners] : listenersByCommand) {
        listeners.erase(protocol);
    }
}

int CommandObserver::HandleCommand(void* command, int phase, void* /*refcon*/) {
    const auto found = listenersByCommand.find(command);
    if (found == listenersByCommand.end()) {
        return 1;
    }
    bool passOn = true;
    for (const auto& [protocol, id] : found->second) {
        if (protocol->HandleCommand(id, phase) != 1) {
            passOn = false;
        }
    }
    return passOn ? 1 : 0;
}
