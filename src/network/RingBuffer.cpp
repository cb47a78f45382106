#include "network/RingBuffer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "common/ILoggingService.h"

namespace {

static_assert(std::endian::native == std::endian::little, "values travel as they are stored");

template <typename Value>
using ByteArray = std::array<unsigned char, sizeof(Value)>;

template <typename Value>
constexpr std::ptrdiff_t kSizeOf = sizeof(Value);

// True when `position` is one of the `count` addresses from `first` on. One comparison is enough:
// as an unsigned number, a position before `first` is far away.
bool liesWithin(const unsigned char* first, std::size_t count, const unsigned char* position) {
    return static_cast<std::size_t>(position - first) < count;
}

} // namespace

RingBuffer::RingBuffer(int requestedSize, ILoggingService* loggingService)
    : logger(loggingService),
      size(std::max(requestedSize, 1)),
      storage(static_cast<unsigned long>(size)),
      bufferStart(storage.Get()),
      bufferEnd(bufferStart + size) {
    ResetBuffer();
}

unsigned long RingBuffer::GetNumReadBytesAvailable() const {
    const auto distance = writePos - readPos;
    return static_cast<unsigned long>(readPos <= writePos ? distance : distance + size);
}

unsigned long RingBuffer::GetNumWriteBytesAvailable() const {
    const auto distance = readPos - writePos - 1;
    return static_cast<unsigned long>(writePos < readPos ? distance : distance + size);
}

void RingBuffer::SetReadPosRestorePoint() {
    readPosRestorePoint = readPos;
}

void RingBuffer::RestoreReadPos() {
    readPos = readPosRestorePoint;
}

void RingBuffer::ResetBuffer() {
    readPos = bufferStart;
    readPosRestorePoint = bufferStart;
    writePos = bufferStart;
}

unsigned char* RingBuffer::GetReadPosAddress() {
    return readPos;
}

void RingBuffer::MoveReadPosForward(unsigned long amount) {
    requireReadable(amount,
                    "Error@RingBuffer::MoveReadPosForward : GetNumReadBytesAvailable() < amount");
    readPos += amount;
    if (readPos >= bufferEnd) {
        readPos -= size;
    }
}

unsigned long RingBuffer::ReadByteArray(unsigned char* dst, unsigned long maxlength) {
    if (maxlength == 0) [[unlikely]] {
        report("Error@RingBuffer::ReadByteArray : maxlength <= 0");
    }
    if (dst == nullptr) [[unlikely]] {
        report("Error@RingBuffer::ReadByteArray : dst == nullptr");
    }
    const unsigned long count = std::min(GetNumReadBytesAvailable(), maxlength);
    const auto beforeEnd = static_cast<unsigned long>(bufferEnd - readPos);
    if (count < beforeEnd) {
        std::copy_n(readPos, count, dst);
        readPos += count;
        return count;
    }
    std::copy_n(readPos, beforeEnd, dst);
    std::copy_n(bufferStart, count - beforeEnd, dst + beforeEnd);
    readPos = bufferStart + (count - beforeEnd);
    return count;
}

void RingBuffer::WriteByteArray(unsigned char* src, unsigned long length) {
    requireWritable(length,
                    "Error@RingBuffer::WriteByteArray : GetNumWriteBytesAvailable() < length");
    const auto beforeEnd = static_cast<unsigned long>(bufferEnd - writePos);
    // A copy that ends exactly at the end does not wrap; the next block write then starts over.
    if (length <= beforeEnd) {
        std::copy_n(src, length, writePos);
        writePos += length;
        return;
    }
    std::copy_n(src, beforeEnd, writePos);
    std::copy_n(src + beforeEnd, length - beforeEnd, bufferStart);
    writePos = bufferStart + (length - beforeEnd);
}

float RingBuffer::ReadFloat() {
    return readValue<float>("Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4");
}

std::int32_t RingBuffer::ReadInt32() {
    return readValue<std::int32_t>("Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4");
}

std::uint32_t RingBuffer::ReadUInt32() {
    return readValue<std::uint32_t>(
        "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4");
}

std::int16_t RingBuffer::ReadInt16() {
    return readValue<std::int16_t>("Error@RingBuffer::ReadInt16 : GetNumReadBytesAvailable() < 2");
}

std::uint16_t RingBuffer::ReadUInt16() {
    return readValue<std::uint16_t>(
        "Error@RingBuffer::ReadUInt16 : GetNumReadBytesAvailable() < 2");
}

std::int8_t RingBuffer::ReadInt8() {
    return readValue<std::int8_t>("Error@RingBuffer::ReadInt8 : GetNumReadBytesAvailable() < 1");
}

std::uint8_t RingBuffer::ReadUInt8() {
    return readValue<std::uint8_t>("Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1");
}

void RingBuffer::WriteFloat(float value) {
    writeValue(value, "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4");
}

void RingBuffer::WriteInt32(std::int32_t value) {
    writeValue(value, "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4");
}

void RingBuffer::WriteUInt32(std::uint32_t value) {
    writeValue(value, "Error@RingBuffer::WriteUInt32 : GetNumWriteBytesAvailable() < 4");
}

void RingBuffer::WriteInt16(std::int16_t value) {
    writeValue(value, "Error@RingBuffer::WriteInt16 : GetNumWriteBytesAvailable() < 2");
}

void RingBuffer::WriteUInt16(std::uint16_t value) {
    writeValue(value, "Error@RingBuffer::WriteUInt16 : GetNumWriteBytesAvailable() < 2");
}

void RingBuffer::WriteInt8(std::int8_t value) {
    writeValue(value, "Error@RingBuffer::WriteInt8 : GetNumWriteBytesAvailable() < 1");
}

void RingBuffer::WriteUInt8(std::uint8_t value) {
    writeValue(value, "Error@RingBuffer::WriteUInt8 : GetNumWriteBytesAvailable() < 1");
}

unsigned char RingBuffer::read() {
    const unsigned char byte = *readPos;
    if (++readPos == bufferEnd) {
        readPos = bufferStart;
    }
    return byte;
}

void RingBuffer::write(unsigned char byte) {
    // A block write may have left the position at the very end.
    if (writePos == bufferEnd) {
        writePos = bufferStart;
    }
    *writePos = byte;
    if (++writePos == bufferEnd) {
        writePos = bufferStart;
    }
}

template <typename Value>
Value RingBuffer::readValue(const char* shortage) {
    unsigned char* const position = readPos;
    if (bufferEnd - position <= kSizeOf<Value> || liesWithin(position, sizeof(Value), writePos))
        [[unlikely]] {
        return readBytes<Value>(shortage);
    }
    Value value{};
    std::memcpy(&value, position, sizeof(value));
    readPos = position + sizeof(value);
    return value;
}

template <typename Value>
Value RingBuffer::readBytes(const char* shortage) {
    requireReadable(sizeof(Value), shortage);
    ByteArray<Value> bytes{};
    for (unsigned char& byte : bytes) {
        byte = read();
    }
    return std::bit_cast<Value>(bytes);
}

template <typename Value>
void RingBuffer::writeValue(Value value, const char* shortage) {
    unsigned char* const position = writePos;
    // One byte stays free.
    if (bufferEnd - position <= kSizeOf<Value> || liesWithin(position + 1, sizeof(Value), readPos))
        [[unlikely]] {
        writeBytes(value, shortage);
        return;
    }
    std::memcpy(position, &value, sizeof(value));
    writePos = position + sizeof(value);
}

template <typename Value>
void RingBuffer::writeBytes(Value value, const char* shortage) {
    requireWritable(sizeof(Value), shortage);
    for (const unsigned char byte : std::bit_cast<ByteArray<Value>>(value)) {
        write(byte);
    }
}

void RingBuffer::requireReadable(unsigned long count, const char* message) const {
    if (GetNumReadBytesAvailable() < count) [[unlikely]] {
        report(message);
    }
}

void RingBuffer::requireWritable(unsigned long count, const char* message) const {
    if (GetNumWriteBytesAvailable() < count) [[unlikely]] {
        report(message);
    }
}

void RingBuffer::report(const char* message) const {
    logger->Log(LogLevelError, message);
}
