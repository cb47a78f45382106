#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "network/IProtocol.h"
#include "network/IProtocolFactory.h"
#include "network/IRingBuffer.h"

// A protocol whose Feed is the test's. Records the command phases that reach it.
class FakeProtocol final : public IProtocol {
public:
    explicit FakeProtocol(unsigned int protocolIdentification = 0x44332211)
        : identification(protocolIdentification) {}
    ~FakeProtocol() override {
        if (onDelete) {
            onDelete();
        }
    }

    unsigned int GetProtocolIdentification() override { return identification; }

    int Feed(IRingBuffer* in, IRingBuffer* out) override { return feed ? feed(*in, *out) : 0; }

    int HandleCommand(unsigned int commandId, int phase) override {
        commands.emplace_back(commandId, phase);
        return commandResult;
    }

    unsigned int identification;
    std::function<int(IRingBuffer& in, IRingBuffer& out)> feed;
    std::function<void()> onDelete;
    int commandResult = 1;
    std::vector<std::pair<unsigned int, int>> commands;
};

// Returns the protocols that `make` makes. The connection owns them.
class FakeProtocolFactory final : public IProtocolFactory {
public:
    ~FakeProtocolFactory() override {
        if (onDelete) {
            onDelete();
        }
    }

    std::map<unsigned int, IProtocol*> CreateProtocolInstances() override {
        ++connectionsServed;
        return make ? make() : std::map<unsigned int, IProtocol*>{};
    }

    std::function<std::map<unsigned int, IProtocol*>()> make;
    std::function<void()> onDelete;
    int connectionsServed = 0;
};
