// The part of TarnelProtocol that reads the definitions message.

#include "common/ILoggingService.h"
#include "common/LogMessage.h"
#include "network/IRingBuffer.h"
#include "protocols/tarnel/InputAction.h"
#include "protocols/tarnel/OutputInfo.h"
#include "protocols/tarnel/TarnelProtocol.h"

namespace {

constexpr std::uint32_t kDefinitionHeaderSize = sizeof(DefinitionHeaderStruct);

// In 32-bit arithmetic, which wraps for absurd counts and sizes.
std::uint32_t messageSize(const DefinitionHeaderStruct& header) {
    return header.inputStructSize * header.inputStructCount +
           header.outputStructSize * header.outputStructCount + kDefinitionHeaderSize;
}

// A client that fills the whole field has its name cut to 99 bytes.
void readName(IRingBuffer& in, char (&name)[kTarnelNameSize]) {
    in.ReadByteArray(reinterpret_cast<unsigned char*>(name), kTarnelNameSize);
    name[kTarnelNameSize - 1] = '\0';
}

} // namespace

std::int32_t TarnelProtocol::tryParseConfig(IRingBuffer* in, IRingBuffer* out) {
    DefinitionHeaderStruct header{};
    if (!readDefinitionHeader(in, &header)) {
        return 0;
    }
    discardDefinitions();
    logIfEnabled(logger, LogLevelVerbose,
                 "Verbose@TarnelProtocol::tryParseConfig  defHeader.inputStructCount(",
                 header.inputStructCount, ") defHeader.outputStructCount(",
                 header.outputStructCount, ")");
    defineInputs(in, header.inputStructCount);
    defineOutputs(in, header.outputStructCount);
    logIfEnabled(logger, LogLevelVerbose,
                 "VERBOSE@TarnelProtocol::tryParseConfig : outputInfos.size(", outputInfos.size(),
                 ")");
    writeOutputInfos(in, out);
    return static_cast<std::int32_t>(messageSize(header));
}

bool TarnelProtocol::readDefinitionHeader(IRingBuffer* in, DefinitionHeaderStruct* header) {
    const unsigned long numBytes = in->GetNumReadBytesAvailable();
    if (numBytes < kDefinitionHeaderSize) {
        logIfEnabled(logger, LogLevelVerbose, "Verbose@TarnelProtocol::tryParseConfig numBytes(",
                     numBytes, ") < sizeof(DefinitionHeaderStruct)(", kDefinitionHeaderSize, ")");
        return false;
    }
    logIfEnabled(logger, LogLevelVerbose,
                 "Verbose@TarnelProtocol::tryParseConfig : recv() readposptr ",
                 reinterpret_cast<std::intptr_t>(in->GetReadPosAddress()));
    header->specifier = in->ReadUInt32();
    if (header->specifier != CMD_DEFINITIONS) {
        logIfEnabled(logger, LogLevelVerbose,
                     "Verbose@TarnelProtocol::tryParseConfig defHeader.specifier(",
                     header->specifier, ") != CMD_DEFINITIONS(", CMD_DEFINITIONS, ")");
        return false;
    }
    logIfEnabled(logger, LogLevelVerbose, "Verbose@TarnelProtocol::tryParseConfig is DEFINITIONS");
    header->inputStructSize = in->ReadUInt32();
    header->inputStructCount = in->ReadUInt32();
    header->outputStructSize = in->ReadUInt32();
    header->outputStructCount = in->ReadUInt32();
    const std::uint32_t packetSize = messageSize(*header);
    if (numBytes < packetSize) {
        // A warning despite its first word: the rest of the message may still arrive.
        logIfEnabled(logger, LogLevelWarning, "Error@TarnelProtocol::tryParseConfig : numBytes (",
                     numBytes, ") < packetSize(", packetSize, ")");
        return false;
    }
    return true;
}

void TarnelProtocol::discardDefinitions() {
    lookup.Forget();
    inputActions.clear();
    outputInfos.clear();
    commandOutputInfos.clear();
}

void TarnelProtocol::defineInputs(IRingBuffer* in, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        InputDefinitionStruct record{};
        extractInputStruct(in, &record);
        auto& action = inputActions[record.actionIdentifier];
        if (action == nullptr) {
            action = std::make_unique<InputAction>(record.actionIdentifier);
        }
        action->AddInputDefinition(record);
    }
}

void TarnelProtocol::defineOutputs(IRingBuffer* in, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        OutputDefinitionStruct record{};
        extractOutputStruct(in, &record);
        const auto& output = outputInfos.emplace_back(
            std::make_unique<OutputInfo>(this, record, datarefProvider, commandObserver));
        if (output->IsCommand()) {
            commandOutputInfos.emplace(static_cast<std::int32_t>(record.outputIdentifier),
                                       output.get());
        }
    }
}

void TarnelProtocol::extractInputStruct(IRingBuffer* in, InputDefinitionStruct* record) {
    record->actionIdentifier = in->ReadInt32();
    record->reserved4 = in->ReadInt32();
    record->reserved8 = in->ReadInt32();
    record->targetIndex = in->ReadInt32();
    record->fixedIntValue = in->ReadInt32();
    record->repeatInterval = in->ReadInt32();
    record->intRangeMinimum = in->ReadInt32();
    record->intRangeMaximum = in->ReadInt32();
    record->targetType = in->ReadInt32();
    record->scalingMode = in->ReadInt32();
    record->rangeType = in->ReadInt32();
    record->rangeIndex = in->ReadInt32();
    record->condition = in->ReadInt32();
    record->fixedFloatValue = in->ReadFloat();
    record->floatRangeMinimum = in->ReadFloat();
    record->floatRangeMaximum = in->ReadFloat();
    record->useFixedValue = in->ReadInt32();
    record->holdCommand = in->ReadInt32();
    record->reserved72 = in->ReadInt32();
    record->commandHeld = in->ReadInt32();
    readName(*in, record->rangeMinimumName);
    readName(*in, record->rangeMaximumName);
    readName(*in, record->targetName);
    readName(*in, record->conditionName);
    record->conditionType = in->ReadInt32();
    record->conditionIndex = in->ReadInt32();
}

void TarnelProtocol::extractOutputStruct(IRingBuffer* in, OutputDefinitionStruct* record) {
    record->outputIdentifier = static_cast<std::uint32_t>(in->ReadInt32());
    readName(*in, record->name);
    record->type = in->ReadInt32();
    record->firstElement = in->ReadInt32();
    record->elementCount = in->ReadInt32();
}
