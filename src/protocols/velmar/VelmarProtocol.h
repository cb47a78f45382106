#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

#include "network/IProtocol.h"
#include "protocols/RepeatedLookup.h"
#include "protocols/velmar/XPlaneObservedCommandState.h"

class AnswerWriter;
class ICommandObserver;
class IDatarefProvider;
class ILoggingService;
class IRingBuffer;
class IUtilities;
class SimStateInformation;
class XPlaneCommand;
class XPlaneDataRef;

// The protocol of clients that address datarefs and commands by their own numbers: small packets
// that register, read, write, run and poll.
//
// One request may hold several packets; their replies make up one answer. A packet that has not
// arrived whole waits in the buffer if its size is known, and otherwise ends the process.
// Owns the descriptors of its client; services are borrowed.
class VelmarProtocol final : public IProtocol {
public:
    VelmarProtocol(SimStateInformation* simState, ICommandObserver* commandObserver,
                   ILoggingService* loggingService, IUtilities* utilities,
                   IDatarefProvider* datarefProvider);
    ~VelmarProtocol() override;
    VelmarProtocol(const VelmarProtocol&) = delete;
    VelmarProtocol& operator=(const VelmarProtocol&) = delete;

    unsigned int GetProtocolIdentification() override;

    // Handles all whole packets in `in`. Always 0.
    int Feed(IRingBuffer* in, IRingBuffer* out) override;

    // Always 1: observing a command never swallows it.
    int HandleCommand(unsigned int id, int phase) override;

    // One packet. Returns the bytes consumed, or 0 for one that has not arrived whole and is left
    // in `in`.
    int tryParsePacket(IRingBuffer* in, IRingBuffer* out);

private:
    int parsePacket(IRingBuffer* in, AnswerWriter& out);
    // Each handles the packet after its type; `available` includes the type. False when the packet
    // waits.
    bool handlePacket(IRingBuffer* in, AnswerWriter& out, unsigned long available);
    bool registerDataref(IRingBuffer* in, AnswerWriter& out);
    bool unregisterDataref(IRingBuffer* in, AnswerWriter& out, unsigned long available);
    bool registerCommand(IRingBuffer* in, AnswerWriter& out);
    bool unregisterCommand(IRingBuffer* in, AnswerWriter& out, unsigned long available);
    // Null for a number without a dataref.
    XPlaneDataRef* findDataref(std::uint32_t identifier);
    bool readDataref(IRingBuffer* in, AnswerWriter& out);
    bool writeDataref(IRingBuffer* in, AnswerWriter& out);
    bool runCommand(IRingBuffer* in, unsigned long available);
    bool pollCommandStates(AnswerWriter& out);

    ICommandObserver* commandObserver;
    ILoggingService* loggingService;
    std::map<std::uint32_t, std::unique_ptr<XPlaneDataRef>> datarefs;
    RepeatedLookup<std::uint32_t, XPlaneDataRef> datarefLookup;
    // In the current request.
    std::size_t lookupsOfDatarefs = 0;
    std::map<std::uint32_t, std::unique_ptr<XPlaneCommand>> commands;
    std::map<std::uint32_t, XPlaneObservedCommandState> observedStates;
};
