#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "orvane/velmar/Client.h"

// The packets of the protocol and the replies to them; docs/velmar.md has the layouts. All readers
// throw detail::UnexpectedAnswer.
namespace orvane::velmar::wire {

// The number that a dataref or a command has on a connection.
using Number = std::uint32_t;

// Starts a request with the identification.
detail::ByteWriter beginRequest();

void writeRegisterDataref(detail::ByteWriter& writer, Number number, const Dataref& dataref);
std::size_t registerDatarefSize(const Dataref& dataref);
// Adds zeros, which the server skips, if the name is too short for the end of a request.
void writeRegisterCommand(detail::ByteWriter& writer, Number number, std::string_view name);
std::size_t registerCommandSize(std::string_view name);
void writeUnregisterDataref(detail::ByteWriter& writer, Number number);
void writeUnregisterCommand(detail::ByteWriter& writer, Number number);
inline constexpr std::size_t kUnregisterSize = 8;
void writeRead(detail::ByteWriter& writer, Number number);
inline constexpr std::size_t kReadSize = 8;
void writeWrite(detail::ByteWriter& writer, Number number, const Value& value);
std::size_t writeSize(const Value& value);
void writeRun(detail::ByteWriter& writer, Number number, Action action);
inline constexpr std::size_t kRunSize = 9;
void writePoll(detail::ByteWriter& writer);
inline constexpr std::size_t kPollSize = 4;

// Bytes of the longest reply, except those to reads and polls.
inline constexpr std::size_t kLongestReply = 16;

// False: the simulator does not have the name.
bool readRegisterDatarefReply(detail::ByteReader& reader, Number number);
bool readRegisterCommandReply(detail::ByteReader& reader, Number number);
void readUnregisterDatarefReply(detail::ByteReader& reader, Number number);
// False: the number had no command.
bool readUnregisterCommandReply(detail::ByteReader& reader, Number number);
Value readReadReply(detail::ByteReader& reader, Number number, const Dataref& dataref);
std::size_t readReplySize(const Dataref& dataref);
void readWriteReply(detail::ByteReader& reader, Number number);

struct PollEntry {
    Number number = 0;
    CommandState state = CommandState::Up;
};
std::vector<PollEntry> readPollReply(detail::ByteReader& reader);
std::size_t pollReplySize(std::size_t entries);

} // namespace orvane::velmar::wire
