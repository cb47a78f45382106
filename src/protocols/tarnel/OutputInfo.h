#pragma once

#include <cstdint>
#include <vector>

#include "XPLMDataAccess.h"
#include "protocols/tarnel/TarnelRecords.h"

class AnswerWriter;
class ICommandObserver;
class IDatarefProvider;
class IProtocol;
class IRingBuffer;

// One value reported to a Tarnel client: a dataref of the simulator or of the plugin, or whether
// one of the plugin's own commands is pressed.
//
// The name is resolved once, at construction; "kyr/" marks the plugin's own names. An unresolved
// dataref silently reports zeros. An array that does not fit in an answer ends the process when it
// is written. An array of the plugin's own that is too large to store throws std::bad_alloc or
// std::length_error at construction.
class OutputInfo final {
public:
    // A command is observed for `protocol` under the record's output identifier.
    OutputInfo(IProtocol* protocol, OutputDefinitionStruct record, IDatarefProvider* provider,
               ICommandObserver* observer);
    OutputInfo(const OutputInfo&) = delete;
    OutputInfo& operator=(const OutputInfo&) = delete;

    bool IsCommand() const;

    // A press is remembered until it has been reported once.
    void SetCommandState(bool down);

    // Appends the entry: identifier, value length in bytes, value.
    void GetData(IRingBuffer* out);
    void GetData(AnswerWriter& out);
    // Appends an entry of the same shape with a zero value.
    void GetDummyData(IRingBuffer* out);
    void GetDummyData(AnswerWriter& out) const;

private:
    void resolveOwnName(IProtocol* protocol, IDatarefProvider* provider,
                        ICommandObserver* observer);

    void writeCommandState(AnswerWriter& out);
    void writeIntArray(AnswerWriter& out);
    void writeFloatArray(AnswerWriter& out);
    void writeDummyValue(AnswerWriter& out) const;
    // The element count is above 0.
    std::int32_t elementsFor(const AnswerWriter& out) const;
    std::uint32_t arrayLength() const;

    OutputDefinitionStruct record;
    XPLMDataRef dataref = nullptr;
    bool isCommand = false;
    bool commandIsDown = false;
    bool commandWasPressed = false;
    // Kept between reports, so that a steady exchange allocates nothing.
    std::vector<std::int32_t> intElements;
    std::vector<float> floatElements;
};
