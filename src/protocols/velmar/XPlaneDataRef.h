#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "XPLMDataAccess.h"
#include "protocols/velmar/VelmarDataType.h"

class AnswerWriter;
class ILoggingService;
class IRingBuffer;

// A client's number for a simulator dataref, with the type in which the value travels.
// FindReference must have succeeded before a value is read or written.
class XPlaneDataRef final {
public:
    // `arraySize` counts elements and matters to the array types only.
    XPlaneDataRef(unsigned int identifier, VelmarDataType dataType, unsigned int arraySize,
                  std::string name);
    XPlaneDataRef(const XPlaneDataRef&) = delete;
    XPlaneDataRef& operator=(const XPlaneDataRef&) = delete;

    // Reads a descriptor. Null, with nothing consumed, if there are fewer than 13 bytes; a name
    // that has not arrived whole ends the process. The caller owns the result.
    static XPlaneDataRef* FromStream(IRingBuffer* in, ILoggingService* log);

    // Resolves the name; false when the simulator does not know it.
    bool FindReference();

    // Appends length and value. False, with nothing written, for a type without a value.
    bool ReadData(IRingBuffer* out);
    bool ReadData(AnswerWriter& out);

    // Reads length and value, and sets the dataref. False when the length does not fit the type,
    // or when an array has not arrived whole; then only the length is consumed.
    bool WriteData(IRingBuffer* in);

    unsigned int GetId() const;
    VelmarDataType GetDataType() const;
    unsigned int GetArraySize() const;
    std::string GetName() const;

private:
    std::uint64_t arrayBytes() const;
    bool hasWholeArray(const IRingBuffer* in, std::uint32_t length) const;

    unsigned int identifier;
    VelmarDataType dataType;
    unsigned int arraySize;
    std::string name;
    XPLMDataRef dataref = nullptr;
    // Kept between reads and writes, so that a steady exchange allocates nothing.
    std::vector<int> intElements;
    std::vector<float> floatElements;
};
