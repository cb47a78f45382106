#pragma once

#include <functional>
#include <string>
#include <vector>

#include "commands/ICommandObserver.h"

// Records who subscribed to what.
class FakeCommandObserver final : public ICommandObserver {
public:
    struct Subscription {
        IProtocol* protocol;
        unsigned int id;
        std::string name;

        bool operator==(const Subscription&) const = default;
    };

    ~FakeCommandObserver() override {
        if (onDelete) {
            onDelete();
        }
    }

    void RegisterProtocolForCommandCallback(IProtocol* protocol, unsigned int id,
                                            std::string name) override {
        registered.push_back({protocol, id, name});
    }

    void UnregisterProtocolForCommandCallback(IProtocol* protocol, std::string name) override {
        unregistered.push_back({protocol, 0, name});
    }

    void UnregisterAllForProtocol(IProtocol* protocol) override {
        protocolsGone.push_back(protocol);
    }

    int HandleCommand(void* command, int phase, void* refcon) override {
        ++commandsHandled;
        lastCommand = command;
        lastPhase = phase;
        lastRefcon = refcon;
        if (onCommand) {
            onCommand();
        }
        return commandResult;
    }

    std::function<void()> onCommand;
    std::function<void()> onDelete;
    std::vector<Subscription> registered;
    std::vector<Subscription> unregistered;
    std::vector<IProtocol*> protocolsGone;
    int commandsHandled = 0;
    void* lastCommand = nullptr;
    int lastPhase = -1;
    void* lastRefcon = nullptr;
    int commandResult = 1;
};
