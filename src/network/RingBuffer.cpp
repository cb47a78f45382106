#include "network/RingBuffer.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "common/ILoggingService.h"

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
    if (maxlength == 0) {
        logger->Log(LogLevelError, "Error@RingBuffer::ReadByteArray : maxlength <= 0");
    }
    if (dst == nullptr) {
        logger->Log(LogLevelError, "Error@RingBuffer::ReadByteArray : dst == nullptr");
    }
    const unsigned long count = std::min(GetNumReadBytesAvailable(), maxlength);
    const unsigned long beforeEnd =
        std::min(count, static_cast<unsigned long>(bufferEnd - readPos));
    std::copy_n(readPos, beforeEnd, dst);
    readPos += beforeEnd;
    if (readPos == bufferEnd) {
        readPos = bufferStart;
    }
    std::copy_n(readPos, count - beforeEnd, dst + beforeEnd);
    readPos += count - beforeEnd;
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
    requireReadable(4, "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4");
    return std::bit_cast<float>(readWord());
}

std::int32_t RingBuffer::ReadInt32() {
    requireReadable(4, "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4");
    return static_cast<std::int32_t>(readWord());
}

std::uint32_t RingBuffer::ReadUInt32() {
    requireReadable(4, "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4");
    return readWord();
}

std::int16_t RingBuffer::ReadInt16() {
    requireReadable(2, "Error@RingBuffer::ReadInt16 : GetNumReadBytesAvailable() < 2");
    return static_cast<std::int16_t>(readHalfWord());
}

std::uint16_t RingBuffer::ReadUInt16() {
    requireReadable(2, "Error@RingBuffer::ReadUInt16 : GetNumReadBytesAvailable() < 2");
    return readHalfWord();
}

std::int8_t RingBuffer::ReadInt8() {
    requireReadable(1, "Error@RingBuffer::ReadInt8 : GetNumReadBytesAvailable() < 1");
    return static_cast<std::int8_t>(read());
}

std::uint8_t RingBuffer::ReadUInt8() {
    requireReadable(1, "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1");
    return read();
}

void RingBuffer::WriteFloat(float value) {
    requireWritable(4, "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4");
    writeWord(std::bit_cast<std::uint32_t>(value));
}

void RingBuffer::WriteInt32(std::int32_t value) {
    requireWritable(4, "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4");
    writeWord(static_cast<std::uint32_t>(value));
}

void RingBuffer::WriteUInt32(std::uint32_t value) {
    requireWritable(4, "Error@RingBuffer::WriteUInt32 : GetNumWriteBytesAvailable() < 4");
    writeWord(value);
}

void RingBuffer::WriteInt16(std::int16_t value) {
    requireWritable(2, "Error@RingBuffer::WriteInt16 : GetNumWriteBytesAvailable() < 2");
    writeHalfWord(static_cast<std::uint16_t>(value));
}

void RingBuffer::WriteUInt16(std::uint16_t value) {
    requireWritable(2, "Error@RingBuffer::WriteUInt16 : GetNumWriteBytesAvailable() < 2");
    writeHalfWord(value);
}

void RingBuffer::WriteInt8(std::int8_t value) {
    requireWritable(1, "Error@RingBuffer::WriteInt8 : GetNumWriteBytesAvailable() < 1");
    write(static_cast<unsigned char>(value));
}

void RingBuffer::WriteUInt8(std::uint8_t value) {
    requireWritable(1, "Error@RingBuffer::WriteUInt8 : GetNumWriteBytesAvailable() < 1");
    write(value);
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

std::uint32_t RingBuffer::readWord() {
    const std::uint32_t low = readHalfWord();
    const std::uint32_t high = readHalfWord();
    return low | high << 16;
}

std::uint16_t RingBuffer::readHalfWord() {
    const unsigned int low = read();
    const unsigned int high = read();
    return static_cast<std::uint16_t>(low | high << 8);
}

void RingBuffer::writeWord(std::uint32_t value) {
    writeHalfWord(static_cast<std::uint16_t>(value));
    writeHalfWord(static_cast<std::uint16_t>(value >> 16));
}

void RingBuffer::writeHalfWord(std::uint16_t value) {
    write(static_cast<unsigned char>(value));
    write(static_cast<unsigned char>(value >> 8));
}

void RingBuffer::requireReadable(unsigned long count, const char* message) const {
    if (GetNumReadBytesAvailable() < count) {
        logger->Log(LogLevelError, message);
    }
}

void RingBuffer::requireWritable(unsigned long count, const char* message) const {
    if (GetNumWriteBytesAvailable() < count) {
        logger->Log(LogLevelError, message);
    }
}
