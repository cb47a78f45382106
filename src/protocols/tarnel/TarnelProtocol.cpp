#include "protocols/tarnel/TarnelProtocol.h"

#include "commands/ICommandObserver.h"
#include "common/ILoggingService.h"
#include "common/IUtilities.h"
#include "common/LogMessage.h"
#include "common/SimStateInformation.h"
#include "network/AnswerWriter.h"
#include "network/IRingBuffer.h"
#include "protocols/tarnel/InputAction.h"
#include "protocols/tarnel/OutputInfo.h"

namespace {

constexpr unsigned int kProtocolIdentification = 0x44332211;
constexpr std::int32_t kVersionRequestSize = 4;
constexpr std::uint32_t kDataHeaderSize = sizeof(DataHeaderStruct);

// The trailer that closes every output stream.
constexpr std::uint32_t kAircraftIdentifier = 0xFFFF;
constexpr std::uint32_t kAircraftIdLength = 4;

constexpr unsigned int kCommandEndPhase = 2;

} // namespace

TarnelProtocol::TarnelProtocol(SimStateInformation* simState, ILoggingService* logger,
                               IUtilities* utilities, IDatarefProvider* datarefProvider,
                               ICommandObserver* commandObserver)
    : datarefProvider(datarefProvider),
      commandObserver(commandObserver),
      simState(simState),
      logger(logger),
      utilities(utilities) {}

TarnelProtocol::~TarnelProtocol() {
    commandObserver->UnregisterAllForProtocol(this);
}

unsigned int TarnelProtocol::GetProtocolIdentification() {
    return kProtocolIdentification;
}

int TarnelProtocol::Feed(IRingBuffer* in, IRingBuffer* out) {
    return tryParsePacket(in, out);
}

int TarnelProtocol::HandleCommand(unsigned int commandId, int phase) {
    const auto found = commandOutputInfos.find(static_cast<std::int32_t>(commandId));
    if (found != commandOutputInfos.end()) {
        found->second->SetCommandState(static_cast<unsigned int>(phase) < kCommandEndPhase);
    }
    return 1;
}

std::int32_t TarnelProtocol::tryParsePacket(IRingBuffer* in, IRingBuffer* out) {
    in->SetReadPosRestorePoint();
    std::int32_t consumed = tryParseVersion(in, out);
    if (consumed == 0) {
        in->RestoreReadPos();
        consumed = tryParseConfig(in, out);
    }
    if (consumed == 0) {
        in->RestoreReadPos();
        consumed = tryParseData(in, out);
    }
    if (consumed < 1) {
        in->RestoreReadPos();
        return consumed;
    }
    if (in->GetNumReadBytesAvailable() == 0) {
        in->ResetBuffer();
    }
    in->SetReadPosRestorePoint();
    return consumed;
}

std::int32_t TarnelProtocol::tryParseVersion(IRingBuffer* in, IRingBuffer* out) {
    const unsigned long numBytes = in->GetNumReadBytesAvailable();
    if (numBytes < sizeof(CMD_VERSION) || in->ReadUInt32() != CMD_VERSION) {
        return 0;
    }
    logIfEnabled(logger, LogLevelVerbose, "Verbose@TarnelProtocol::tryParseVersion is VERSION");
    logIfEnabled(logger, LogLevelVerbose, "Verbose@TarnelProtocol::tryParseVersion available ",
                 numBytes);
    // The version of the protocol's implementation; clients compare all of it.
    out->WriteUInt32(CMD_VERSION);
    out->WriteUInt8(1);
    out->WriteUInt8(0);
    out->WriteUInt8(7);
    out->WriteUInt8(10);
    out->WriteUInt32(6);
    return kVersionRequestSize;
}

std::int32_t TarnelProtocol::tryParseData(IRingBuffer* in, IRingBuffer* out) {
    writeOutputInfos(in, out);
    const unsigned long numBytes = in->GetNumReadBytesAvailable();
    if (numBytes < kDataHeaderSize) {
        logIfEnabled(logger, LogLevelVerbose, "Verbose@TarnelProtocol::tryParseData numBytes(",
                     numBytes, ") < sizeof(DataHeaderStruct)(", kDataHeaderSize, ")");
        return 0;
    }
    DataHeaderStruct header{};
    header.specifier = in->ReadUInt32();
    if (header.specifier != CMD_DATA) {
        logIfEnabled(logger, LogLevelVerbose,
                     "Verbose@TarnelProtocol::tryParseData dataHeader.specifier(", header.specifier,
                     ") != CMD_DATA(", CMD_DATA, ")");
        return 0;
    }
    logIfEnabled(logger, LogLevelVerbose, "Verbose@TarnelProtocol::tryParseData is DATA");
    header.structSize = in->ReadUInt32();
    header.structCount = in->ReadUInt32();
    const std::uint32_t packetSize = header.structSize * header.structCount + kDataHeaderSize;
    if (numBytes < packetSize) {
        logIfEnabled(logger, LogLevelWarning, "WARNING@TarnelProtocol::tryParseData : numBytes (",
                     numBytes, ") < packetSize(", packetSize, ")");
        return 0;
    }
    return executeItems(in, header.structCount) ? static_cast<std::int32_t>(packetSize) : 0;
}

// Stops at an item whose action was never declared. The whole message then stays in the buffer and
// is executed up to that item again when it is next fed: clients declare first.
bool TarnelProtocol::executeItems(IRingBuffer* in, std::uint32_t count) {
    const auto nowMs = static_cast<unsigned long>(utilities->GetTimeStampMs());
    for (std::uint32_t i = 0; i < count; ++i) {
        HardwareDataStruct item{};
        extractHardwareDataStruct(in, &item);
        InputAction* const action =
            lookup.Find(inputActions, static_cast<std::int32_t>(item.actionIdentifier), i);
        if (action == nullptr) {
            logIfEnabled(logger, LogLevelWarning,
                         "WARNING@TarnelProtocol::tryParseData : unknown action id(",
                         item.actionIdentifier, ")");
            return false;
        }
        action->ExecuteAction(item.value, nowMs);
    }
    return true;
}

void TarnelProtocol::extractHardwareDataStruct(IRingBuffer* in, HardwareDataStruct* record) {
    record->actionIdentifier = in->ReadUInt32();
    in->ReadByteArray(record->value, sizeof(record->value));
}

void TarnelProtocol::writeOutputInfos(IRingBuffer* /*in*/, IRingBuffer* out) {
    const bool planeLoaded = simState->IsPlaneLoaded();
    AnswerWriter answer(out);
    for (const auto& output : outputInfos) {
        if (planeLoaded) {
            output->GetData(answer);
        } else {
            output->GetDummyData(answer);
        }
    }
    if (planeLoaded) {
        logIfEnabled(logger, LogLevelVerbose,
                     "VERBOSE@TarnelProtocol::writeOutputInfos : outputInfos.size(",
                     outputInfos.size(), ")");
    }
    answer.WriteUInt32(kAircraftIdentifier);
    answer.WriteUInt32(kAircraftIdLength);
    answer.WriteUInt32(planeLoaded ? simState->GetPlaneId() : 0);
}
