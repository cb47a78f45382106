#include "protocols/velmar/XPlaneDataRef.h"

#include <algorithm>
#include <utility>

#include "common/ILoggingService.h"
#include "network/AnswerWriter.h"
#include "network/IRingBuffer.h"
#include "protocols/velmar/DescriptorName.h"

namespace {

constexpr unsigned long kSmallestDescriptor = 13;
constexpr std::uint32_t kLargestDataType = 5;

constexpr std::int32_t kWordLength = 4;
constexpr std::int32_t kByteLength = 1;

VelmarDataType toDataType(std::uint32_t value) {
    return value <= kLargestDataType ? static_cast<VelmarDataType>(value) : VelmarDataType::None;
}

// Raw elements, in the host's byte order: little-endian, as on the wire.
template <typename Element>
void readArray(int (*getter)(XPLMDataRef, Element*, int, int), XPLMDataRef dataref,
               unsigned int size, std::vector<Element>& elements, AnswerWriter& out) {
    const std::uint64_t length = std::uint64_t{size} * sizeof(Element);
    out.WriteInt32(static_cast<std::int32_t>(length));
    if (size == 0) {
        return;
    }
    // One element too many already triggers the fatal report; do not allocate more.
    const auto count = std::min<std::uint64_t>(size, out.Room() / sizeof(Element) + 1);
    // Zeros for the elements that the dataref does not have.
    elements.assign(count, Element{});
    getter(dataref, elements.data(), 0, static_cast<int>(count));
    out.WriteByteArray(reinterpret_cast<unsigned char*>(elements.data()), count * sizeof(Element));
}

template <typename Element>
void writeArray(void (*setter)(XPLMDataRef, Element*, int, int), XPLMDataRef dataref,
                unsigned int size, std::vector<Element>& elements, IRingBuffer* in) {
    if (size == 0) {
        return;
    }
    elements.resize(size);
    in->ReadByteArray(reinterpret_cast<unsigned char*>(elements.data()), size * sizeof(Element));
    setter(dataref, elements.data(), 0, static_cast<int>(size));
}

} // namespace

XPlaneDataRef::XPlaneDataRef(unsigned int identifier, VelmarDataType dataType,
                             unsigned int arraySize, std::string name)
    : identifier(identifier), dataType(dataType), arraySize(arraySize), name(std::move(name)) {}

XPlaneDataRef* XPlaneDataRef::FromStream(IRingBuffer* in, ILoggingService* log) {
    if (in->GetNumReadBytesAvailable() < kSmallestDescriptor) {
        log->Log(LogLevelWarning,
                 "WARNING@XPlaneDataRef::FromStream : Not enough bytes to read dataref.");
        return nullptr;
    }
    const std::uint32_t id = in->ReadUInt32();
    const VelmarDataType type = toDataType(in->ReadUInt32());
    const std::uint32_t size = in->ReadUInt32();
    return new XPlaneDataRef(id, type, size, readDescriptorName(in, log, "XPlaneDataRef"));
}

bool XPlaneDataRef::FindReference() {
    dataref = XPLMFindDataRef(name.c_str());
    return dataref != nullptr;
}

bool XPlaneDataRef::ReadData(IRingBuffer* out) {
    AnswerWriter writer(out);
    return ReadData(writer);
}

bool XPlaneDataRef::ReadData(AnswerWriter& out) {
    switch (dataType) {
    case VelmarDataType::Int:
        out.WriteInt32(kWordLength);
        out.WriteInt32(XPLMGetDatai(dataref));
        return true;
    case VelmarDataType::Float:
        out.WriteInt32(kWordLength);
        out.WriteFloat(XPLMGetDataf(dataref));
        return true;
    case VelmarDataType::Byte:
        out.WriteInt32(kByteLength);
        out.WriteUInt8(static_cast<std::uint8_t>(XPLMGetDatai(dataref)));
        return true;
    case VelmarDataType::IntArray:
        readArray(XPLMGetDatavi, dataref, arraySize, intElements, out);
        return true;
    case VelmarDataType::FloatArray:
        readArray(XPLMGetDatavf, dataref, arraySize, floatElements, out);
        return true;
    default:
        return false;
    }
}

bool XPlaneDataRef::WriteData(IRingBuffer* in) {
    const std::uint32_t length = in->ReadUInt32();
    if (dataType == VelmarDataType::Int && length == kWordLength) {
        XPLMSetDatai(dataref, in->ReadInt32());
    } else if (dataType == VelmarDataType::Float && length == kWordLength) {
        XPLMSetDataf(dataref, in->ReadFloat());
    } else if (dataType == VelmarDataType::Byte && length == kByteLength) {
        XPLMSetDatai(dataref, in->ReadUInt8());
    } else if (dataType == VelmarDataType::IntArray && hasWholeArray(in, length)) {
        writeArray(XPLMSetDatavi, dataref, arraySize, intElements, in);
    } else if (dataType == VelmarDataType::FloatArray && hasWholeArray(in, length)) {
        writeArray(XPLMSetDatavf, dataref, arraySize, floatElements, in);
    } else {
        return false;
    }
    return true;
}

std::uint64_t XPlaneDataRef::arrayBytes() const {
    return std::uint64_t{arraySize} * 4;
}

bool XPlaneDataRef::hasWholeArray(const IRingBuffer* in, std::uint32_t length) const {
    return length == arrayBytes() && in->GetNumReadBytesAvailable() >= length;
}

unsigned int XPlaneDataRef::GetId() const {
    return identifier;
}

VelmarDataType XPlaneDataRef::GetDataType() const {
    return dataType;
}

unsigned int XPlaneDataRef::GetArraySize() const {
    return arraySize;
}

std::string XPlaneDataRef::GetName() const {
    return name;
}
