#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "network/IProtocol.h"
#include "protocols/RepeatedLookup.h"
#include "protocols/tarnel/TarnelRecords.h"

class ICommandObserver;
class IDatarefProvider;
class ILoggingService;
class InputAction;
class IRingBuffer;
class IUtilities;
class OutputInfo;
class SimStateInformation;

// The protocol of a control-loading client: a version handshake, definitions of inputs and outputs,
// and data messages that drive the inputs and are answered with the outputs' current values.
//
// Owns the definitions of its client. Services are borrowed. Nothing that a client sends is
// reported at LogLevelError here; a message whose record counts do not fit its length runs into the
// ring buffer's own checks.
class TarnelProtocol final : public IProtocol {
public:
    TarnelProtocol(SimStateInformation* simState, ILoggingService* logger, IUtilities* utilities,
                   IDatarefProvider* datarefProvider, ICommandObserver* commandObserver);
    ~TarnelProtocol() override;
    TarnelProtocol(const TarnelProtocol&) = delete;
    TarnelProtocol& operator=(const TarnelProtocol&) = delete;

    unsigned int GetProtocolIdentification() override;

    // Returns the bytes consumed, or 0 when no complete message was recognised; never a negative
    // value. An incomplete or unknown message stays in `in`, and is answered with the outputs.
    int Feed(IRingBuffer* in, IRingBuffer* out) override;

    // Always 1: observing a command never swallows it.
    int HandleCommand(unsigned int commandId, int phase) override;

    // The steps of Feed. Each parser returns the size of the message that it consumed, or 0 when
    // the message at the head of `in` is not its own or not complete; the caller restores `in`.
    std::int32_t tryParsePacket(IRingBuffer* in, IRingBuffer* out);
    std::int32_t tryParseVersion(IRingBuffer* in, IRingBuffer* out);
    std::int32_t tryParseConfig(IRingBuffer* in, IRingBuffer* out);
    // Writes the outputs first, whatever `in` holds.
    std::int32_t tryParseData(IRingBuffer* in, IRingBuffer* out);
    // One entry per output in order of definition, then the trailer with the aircraft's id.
    void writeOutputInfos(IRingBuffer* in, IRingBuffer* out);

    // Unchecked: the whole record must be in the buffer. Names come out terminated.
    void extractInputStruct(IRingBuffer* in, InputDefinitionStruct* record);
    void extractOutputStruct(IRingBuffer* in, OutputDefinitionStruct* record);
    void extractHardwareDataStruct(IRingBuffer* in, HardwareDataStruct* record);

private:
    // False when the head of `in` is not a complete definitions message.
    bool readDefinitionHeader(IRingBuffer* in, DefinitionHeaderStruct* header);
    void discardDefinitions();
    void defineInputs(IRingBuffer* in, std::uint32_t count);
    void defineOutputs(IRingBuffer* in, std::uint32_t count);
    bool executeItems(IRingBuffer* in, std::uint32_t count);

    IDatarefProvider* datarefProvider;
    ICommandObserver* commandObserver;
    SimStateInformation* simState;
    ILoggingService* logger;
    IUtilities* utilities;
    std::map<std::int32_t, std::unique_ptr<InputAction>> inputActions;
    RepeatedLookup<std::int32_t, InputAction> lookup;
    std::vector<std::unique_ptr<OutputInfo>> outputInfos;
    // Those of outputInfos that watch a command.
    std::map<std::int32_t, OutputInfo*> commandOutputInfos;
};
