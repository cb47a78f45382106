#include "protocols/tarnel/OutputInfo.h"

#include <algorithm>
#include <string_view>

#include "commands/ICommandObserver.h"
#include "datarefs/IDatarefProvider.h"
#include "network/AnswerWriter.h"

namespace {

constexpr std::string_view kOwnPrefix = "kyr/";
constexpr std::uint32_t kScalarLength = 4;
constexpr std::uint32_t kCommandStateLength = 1;

} // namespace

OutputInfo::OutputInfo(IProtocol* protocol, OutputDefinitionStruct record,
                       IDatarefProvider* provider, ICommandObserver* observer)
    : record(record) {
    if (std::string_view(record.name).starts_with(kOwnPrefix)) {
        resolveOwnName(protocol, provider, observer);
    }
    if (!isCommand && dataref == nullptr) {
        dataref = XPLMFindDataRef(record.name);
    }
}

void OutputInfo::resolveOwnName(IProtocol* protocol, IDatarefProvider* provider,
                                ICommandObserver* observer) {
    const auto elements = static_cast<std::size_t>(record.elementCount);
    switch (record.type) {
    case TarnelType::kInt:
        dataref = provider->RegisterInt(record.name);
        break;
    case TarnelType::kFloat:
        dataref = provider->RegisterFloat(record.name);
        break;
    case TarnelType::kIntArray:
        dataref = provider->RegisterIntArray(elements, record.name);
        break;
    case TarnelType::kFloatArray:
        dataref = provider->RegisterFloatArray(elements, record.name);
        break;
    case TarnelType::kCommand:
        observer->RegisterProtocolForCommandCallback(protocol, record.outputIdentifier,
                                                     record.name);
        isCommand = true;
        break;
    default:
        break;
    }
}

bool OutputInfo::IsCommand() const {
    return isCommand;
}

void OutputInfo::SetCommandState(bool down) {
    if (down && !commandIsDown) {
        commandWasPressed = true;
    }
    commandIsDown = down;
}

void OutputInfo::GetData(IRingBuffer* out) {
    AnswerWriter writer(out);
    GetData(writer);
}

void OutputInfo::GetData(AnswerWriter& out) {
    if (isCommand) {
        writeCommandState(out);
        return;
    }
    if (dataref == nullptr) {
        GetDummyData(out);
        return;
    }
    out.WriteUInt32(record.outputIdentifier);
    switch (record.type) {
    case TarnelType::kInt:
        out.WriteUInt32(kScalarLength);
        out.WriteInt32(XPLMGetDatai(dataref));
        break;
    case TarnelType::kFloat:
        out.WriteUInt32(kScalarLength);
        out.WriteFloat(XPLMGetDataf(dataref));
        break;
    case TarnelType::kIntArray:
        writeIntArray(out);
        break;
    case TarnelType::kFloatArray:
        writeFloatArray(out);
        break;
    // Clients know that the entry of any other type is only its identifier.
    default:
        break;
    }
}

void OutputInfo::writeCommandState(AnswerWriter& out) {
    out.WriteUInt32(record.outputIdentifier);
    out.WriteUInt32(kCommandStateLength);
    out.WriteUInt8(commandIsDown || commandWasPressed ? 1 : 0);
    commandWasPressed = false;
}

void OutputInfo::writeIntArray(AnswerWriter& out) {
    if (record.elementCount > 0) {
        // Zeros for the elements that the dataref does not have.
        const std::int32_t count = elementsFor(out);
        intElements.assign(static_cast<std::size_t>(count), 0);
        XPLMGetDatavi(dataref, intElements.data(), record.firstElement, count);
    }
    out.WriteUInt32(arrayLength());
    out.WriteInt32s(intElements.data(), intElements.size());
}

void OutputInfo::writeFloatArray(AnswerWriter& out) {
    if (record.elementCount > 0) {
        const std::int32_t count = elementsFor(out);
        floatElements.assign(static_cast<std::size_t>(count), 0.0F);
        XPLMGetDatavf(dataref, floatElements.data(), record.firstElement, count);
    }
    out.WriteUInt32(arrayLength());
    out.WriteFloats(floatElements.data(), floatElements.size());
}

void OutputInfo::GetDummyData(IRingBuffer* out) {
    AnswerWriter writer(out);
    GetDummyData(writer);
}

void OutputInfo::GetDummyData(AnswerWriter& out) const {
    out.WriteUInt32(record.outputIdentifier);
    if (isCommand) {
        // Unlike the real entry, this one has the identifier twice; clients expect it.
        out.WriteUInt32(record.outputIdentifier);
        out.WriteUInt32(kCommandStateLength);
        out.WriteUInt8(0);
        return;
    }
    writeDummyValue(out);
}

void OutputInfo::writeDummyValue(AnswerWriter& out) const {
    switch (record.type) {
    case TarnelType::kInt:
        out.WriteUInt32(kScalarLength);
        out.WriteInt32(0);
        break;
    case TarnelType::kFloat:
        out.WriteUInt32(kScalarLength);
        out.WriteFloat(0.0F);
        break;
    case TarnelType::kIntArray:
        out.WriteUInt32(arrayLength());
        for (std::int32_t i = 0; i < record.elementCount; ++i) {
            out.WriteInt32(0);
        }
        break;
    case TarnelType::kFloatArray:
        out.WriteUInt32(arrayLength());
        for (std::int32_t i = 0; i < record.elementCount; ++i) {
            out.WriteFloat(0.0F);
        }
        break;
    default:
        break;
    }
}

// One element too many already triggers the fatal report; do not allocate more.
std::int32_t OutputInfo::elementsFor(const AnswerWriter& out) const {
    const auto wanted = static_cast<unsigned long>(record.elementCount);
    const unsigned long enough = out.Room() / sizeof(std::int32_t) + 1;
    return static_cast<std::int32_t>(std::min(wanted, enough));
}

// A negative count wraps.
std::uint32_t OutputInfo::arrayLength() const {
    return static_cast<std::uint32_t>(record.elementCount) * 4;
}
