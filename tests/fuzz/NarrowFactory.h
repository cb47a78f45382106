#pragma once

#include <memory>
#include <utility>

#include "network/IProtocol.h"
#include "network/IProtocolFactory.h"
#include "network/RingBuffer.h"

// A protocol whose answers have 64 KiB of room instead of 256 MiB, so that an endless answer ends
// soon. It forwards to another protocol.
class NarrowProtocol final : public IProtocol {
public:
    NarrowProtocol(std::unique_ptr<IProtocol> within, ILoggingService* logger)
        : within(std::move(within)), answer(kAnswerSize, logger) {}

    unsigned int GetProtocolIdentification() override {
        return within->GetProtocolIdentification();
    }

    int Feed(IRingBuffer* in, IRingBuffer* out) override {
        answer.ResetBuffer();
        const int result = within->Feed(in, &answer);
        while (answer.GetNumReadBytesAvailable() > 0) {
            out->WriteUInt8(answer.ReadUInt8());
        }
        return result;
    }

    int HandleCommand(unsigned int commandId, int phase) override {
        return within->HandleCommand(commandId, phase);
    }

private:
    static constexpr int kAnswerSize = 64 * 1024;

    std::unique_ptr<IProtocol> within;
    RingBuffer answer;
};

// Makes what another factory makes, narrowed.
class NarrowFactory final : public IProtocolFactory {
public:
    NarrowFactory(IProtocolFactory& wide, ILoggingService* logger) : wide(wide), logger(logger) {}

    std::map<unsigned int, IProtocol*> CreateProtocolInstances() override {
        auto instances = wide.CreateProtocolInstances();
        for (auto& [identification, instance] : instances) {
            instance = new NarrowProtocol(std::unique_ptr<IProtocol>(instance), logger);
        }
        return instances;
    }

private:
    IProtocolFactory& wide;
    ILoggingService* logger;
};
