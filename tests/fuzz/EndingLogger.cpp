#include "fuzz/EndingLogger.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

void EndingLogger::Log(LogLevel level, std::string message) {
    if (level != LogLevelError) {
        return;
    }
    const bool expected = std::any_of(documented.begin(), documented.end(),
                                      [&](auto prefix) { return message.starts_with(prefix); });
    if (expected) {
        throw DocumentedEnd{};
    }
    std::fprintf(stderr, "not documented for this input: %s\n", message.c_str());
    std::abort();
}

// A count or a size that does not match the bytes of the message, or an endless answer.
std::vector<std::string_view> endsOfTarnel() {
    return {"Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4",
            "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4",
            "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4",
            "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4",
            "Error@RingBuffer::WriteUInt32 : GetNumWriteBytesAvailable() < 4",
            "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4",
            "Error@RingBuffer::WriteUInt8 : GetNumWriteBytesAvailable() < 1"};
}

// A packet torn at a place where Velmar does not wait, or an endless answer.
std::vector<std::string_view> endsOfVelmar() {
    return {"Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4",
            "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4",
            "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4",
            "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1",
            "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4",
            "Error@RingBuffer::WriteUInt32 : GetNumWriteBytesAvailable() < 4",
            "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4",
            "Error@RingBuffer::WriteUInt8 : GetNumWriteBytesAvailable() < 1",
            "Error@RingBuffer::WriteByteArray : GetNumWriteBytesAvailable() < length",
            "FATAL@XPlaneDataRef::FromStream : tried to read string with ",
            "FATAL@VelmarDataRef::FromStream : tried to read string with ",
            "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref"};
}

std::vector<std::string_view> endsOfAnyProtocol() {
    std::vector<std::string_view> ends = endsOfTarnel();
    for (const std::string_view end : endsOfVelmar()) {
        ends.push_back(end);
    }
    return ends;
}
