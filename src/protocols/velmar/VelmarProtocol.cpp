#include "protocols/velmar/VelmarProtocol.h"

#include <algorithm>
#include <utility>

#include "commands/ICommandObserver.h"
#include "network/AnswerWriter.h"
#include "network/IRingBuffer.h"
#include "protocols/velmar/XPlaneCommand.h"
#include "protocols/velmar/XPlaneDataRef.h"

namespace {

constexpr unsigned int kProtocolIdentification = 0x88776655;

// Packet types; a reply begins with the type of its request.
constexpr std::uint32_t kRegisterDataref = 1;
constexpr std::uint32_t kUnregisterDataref = 2;
constexpr std::uint32_t kRegisterCommand = 3;
constexpr std::uint32_t kUnregisterCommand = 4;
constexpr std::uint32_t kReadDataref = 5;
constexpr std::uint32_t kWriteDataref = 6;
constexpr std::uint32_t kRunCommand = 7;
constexpr std::uint32_t kPollCommandStates = 8;

constexpr unsigned long kTypeSize = 4;
constexpr unsigned long kTypeAndIdentifierSize = 8;

constexpr std::int32_t kSuccess = 1;
constexpr std::int32_t kFailure = 2;
// What a failure was about.
constexpr std::int32_t kDatarefFailure = 1;
constexpr std::int32_t kCommandFailure = 2;

constexpr std::uint8_t kRunOnce = 1;
constexpr std::uint8_t kRunBegin = 2;

constexpr std::uint8_t kStateUp = 0;
constexpr std::uint8_t kStateDown = 1;
// Pressed and released since the state was last queried.
constexpr std::uint8_t kStatePressedBetween = 2;

constexpr int kCommandEndPhase = 2;

void writeReplyHead(AnswerWriter& out, std::uint32_t type, std::uint32_t identifier) {
    out.WriteUInt32(type);
    out.WriteUInt32(identifier);
}

void writeFailure(AnswerWriter& out, std::int32_t about) {
    out.WriteInt32(kFailure);
    out.WriteInt32(about);
}

std::uint8_t stateByte(const XPlaneObservedCommandState& state) {
    if (state.GetCurrentState()) {
        return kStateDown;
    }
    return state.GetLastQueriedState() ? kStateUp : kStatePressedBetween;
}

} // namespace

VelmarProtocol::VelmarProtocol(SimStateInformation* /*simState*/, ICommandObserver* commandObserver,
                               ILoggingService* loggingService, IUtilities* /*utilities*/,
                               IDatarefProvider* /*datarefProvider*/)
    : commandObserver(commandObserver), loggingService(loggingService) {}

VelmarProtocol::~VelmarProtocol() {
    for (const auto& [identifier, command] : commands) {
        commandObserver->UnregisterProtocolForCommandCallback(this, command->GetName());
    }
    // A command whose number was reused is no longer in the map, but is still observed.
    commandObserver->UnregisterAllForProtocol(this);
}

unsigned int VelmarProtocol::GetProtocolIdentification() {
    return kProtocolIdentification;
}

int VelmarProtocol::Feed(IRingBuffer* in, IRingBuffer* out) {
    in->SetReadPosRestorePoint();
    lookupsOfDatarefs = 0;
    AnswerWriter answer(out);
    int consumed = 0;
    do {
        consumed = parsePacket(in, answer);
    } while (consumed > 0);
    in->RestoreReadPos();
    return consumed;
}

int VelmarProtocol::HandleCommand(unsigned int id, int phase) {
    const auto found = observedStates.find(id);
    if (found != observedStates.end()) {
        found->second.Set(phase < kCommandEndPhase);
    }
    return 1;
}

int VelmarProtocol::tryParsePacket(IRingBuffer* in, IRingBuffer* out) {
    AnswerWriter answer(out);
    return parsePacket(in, answer);
}

int VelmarProtocol::parsePacket(IRingBuffer* in, AnswerWriter& out) {
    const unsigned long available = in->GetNumReadBytesAvailable();
    in->SetReadPosRestorePoint();
    if (available < kTypeSize || !handlePacket(in, out, available)) {
        in->RestoreReadPos();
        return 0;
    }
    return static_cast<int>(available - in->GetNumReadBytesAvailable());
}

bool VelmarProtocol::handlePacket(IRingBuffer* in, AnswerWriter& out, unsigned long available) {
    switch (in->ReadUInt32()) {
    case kRegisterDataref:
        return registerDataref(in, out);
    case kUnregisterDataref:
        return unregisterDataref(in, out, available);
    case kRegisterCommand:
        return registerCommand(in, out);
    case kUnregisterCommand:
        return unregisterCommand(in, out, available);
    case kReadDataref:
        return readDataref(in, out);
    case kWriteDataref:
        return writeDataref(in, out);
    case kRunCommand:
        return runCommand(in, available);
    case kPollCommandStates:
        return pollCommandStates(out);
    default:
        // The type itself is consumed, without a reply.
        return true;
    }
}

bool VelmarProtocol::registerDataref(IRingBuffer* in, AnswerWriter& out) {
    std::unique_ptr<XPlaneDataRef> dataref(XPlaneDataRef::FromStream(in, loggingService));
    if (dataref == nullptr) {
        return false;
    }
    const std::uint32_t identifier = dataref->GetId();
    writeReplyHead(out, kRegisterDataref, identifier);
    if (dataref->FindReference()) {
        datarefLookup.Forget();
        datarefs[identifier] = std::move(dataref);
        out.WriteInt32(kSuccess);
    } else {
        writeFailure(out, kDatarefFailure);
    }
    return true;
}

bool VelmarProtocol::unregisterDataref(IRingBuffer* in, AnswerWriter& out,
                                       unsigned long available) {
    if (available < kTypeAndIdentifierSize) {
        return false;
    }
    const std::uint32_t identifier = in->ReadUInt32();
    datarefLookup.Forget();
    datarefs.erase(identifier);
    writeReplyHead(out, kUnregisterDataref, identifier);
    out.WriteInt32(kSuccess);
    return true;
}

bool VelmarProtocol::registerCommand(IRingBuffer* in, AnswerWriter& out) {
    std::unique_ptr<XPlaneCommand> command(XPlaneCommand::FromStream(in, loggingService));
    const std::uint32_t identifier = command->GetId();
    writeReplyHead(out, kRegisterCommand, identifier);
    if (!command->FindReference()) {
        writeFailure(out, kCommandFailure);
        return true;
    }
    const std::string name = command->GetName();
    commands[identifier] = std::move(command);
    observedStates[identifier] = XPlaneObservedCommandState();
    commandObserver->RegisterProtocolForCommandCallback(this, identifier, name);
    out.WriteInt32(kSuccess);
    return true;
}

bool VelmarProtocol::unregisterCommand(IRingBuffer* in, AnswerWriter& out,
                                       unsigned long available) {
    if (available < kTypeAndIdentifierSize) {
        return false;
    }
    const std::uint32_t identifier = in->ReadUInt32();
    writeReplyHead(out, kUnregisterCommand, identifier);
    const auto found = commands.find(identifier);
    if (found == commands.end()) {
        writeFailure(out, kCommandFailure);
        return true;
    }
    commandObserver->UnregisterProtocolForCommandCallback(this, found->second->GetName());
    commands.erase(found);
    observedStates.erase(identifier);
    out.WriteInt32(kSuccess);
    return true;
}

XPlaneDataRef* VelmarProtocol::findDataref(std::uint32_t identifier) {
    return datarefLookup.Find(datarefs, identifier, lookupsOfDatarefs++);
}

bool VelmarProtocol::readDataref(IRingBuffer* in, AnswerWriter& out) {
    const std::uint32_t identifier = in->ReadUInt32();
    writeReplyHead(out, kReadDataref, identifier);
    XPlaneDataRef* const dataref = findDataref(identifier);
    if (dataref == nullptr) {
        writeFailure(out, kDatarefFailure);
        return true;
    }
    out.WriteInt32(kSuccess);
    dataref->ReadData(out);
    return true;
}

bool VelmarProtocol::writeDataref(IRingBuffer* in, AnswerWriter& out) {
    const std::uint32_t identifier = in->ReadUInt32();
    XPlaneDataRef* const dataref = findDataref(identifier);
    if (dataref == nullptr) {
        // The value stays in the buffer and is read as the next packet: only the missing descriptor
        // knows its size. Clients register before they write.
        return true;
    }
    if (!dataref->WriteData(in)) {
        return false;
    }
    writeReplyHead(out, kWriteDataref, identifier);
    out.WriteInt32(kSuccess);
    return true;
}

bool VelmarProtocol::runCommand(IRingBuffer* in, unsigned long available) {
    if (available == kTypeSize) {
        return false;
    }
    const std::uint32_t identifier = in->ReadUInt32();
    const std::uint8_t action = in->ReadUInt8();
    const auto found = commands.find(identifier);
    if (found == commands.end()) {
        return true;
    }
    switch (action) {
    case kRunOnce:
        found->second->Once();
        break;
    case kRunBegin:
        found->second->Begin();
        break;
    default:
        found->second->End();
        break;
    }
    return true;
}

// Polling resets nothing: a command that was ever pressed is reported by every later poll.
bool VelmarProtocol::pollCommandStates(AnswerWriter& out) {
    const auto changed = std::count_if(observedStates.begin(), observedStates.end(),
                                       [](const auto& entry) { return entry.second.Changed(); });
    out.WriteUInt32(static_cast<std::uint32_t>(changed));
    for (const auto& [identifier, state] : observedStates) {
        if (state.Changed()) {
            out.WriteUInt32(identifier);
            out.WriteUInt8(stateByte(state));
        }
    }
    return true;
}
