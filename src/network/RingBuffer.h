#pragma once

#include <cstdint>

#include "network/IRingBuffer.h"
#include "network/ReservedBytes.h"

class ILoggingService;

// Fixed-size circular byte queue. One byte of the storage stays free, so that equal positions
// always mean empty: `size` bytes of storage hold at most `size - 1`.
//
// Storage is allocated once and neither zeroed nor touched before use, so a large buffer costs
// address space but no memory. Flight-loop thread only. A shortage is reported at LogLevelError,
// which ends the process; with a logger that returns, the operation goes on anyway.
class RingBuffer final : public IRingBuffer {
public:
    // A size below 1 is taken as 1. The logger is borrowed.
    RingBuffer(int requestedSize, ILoggingService* loggingService);
    ~RingBuffer() override = default;
    RingBuffer(const RingBuffer&) = delete;
    RingBuffer& operator=(const RingBuffer&) = delete;

    void WriteByteArray(unsigned char* src, unsigned long length) override;
    unsigned long ReadByteArray(unsigned char* dst, unsigned long maxlength) override;
    unsigned long GetNumReadBytesAvailable() const override;
    unsigned long GetNumWriteBytesAvailable() const override;
    void SetReadPosRestorePoint() override;
    void RestoreReadPos() override;
    void ResetBuffer() override;
    unsigned char* GetReadPosAddress() override;
    void MoveReadPosForward(unsigned long amount) override;

    float ReadFloat() override;
    std::int32_t ReadInt32() override;
    std::uint32_t ReadUInt32() override;
    std::int16_t ReadInt16() override;
    std::uint16_t ReadUInt16() override;
    std::int8_t ReadInt8() override;
    std::uint8_t ReadUInt8() override;

    void WriteFloat(float value) override;
    void WriteInt32(std::int32_t value) override;
    void WriteUInt32(std::uint32_t value) override;
    void WriteInt16(std::int16_t value) override;
    void WriteUInt16(std::uint16_t value) override;
    void WriteInt8(std::int8_t value) override;
    void WriteUInt8(std::uint8_t value) override;

    // One byte, unchecked.
    unsigned char read();
    void write(unsigned char byte);

private:
    // A value that lies in one piece, before the last byte of the storage, is copied at once; any
    // other goes byte by byte. `shortage` is reported if a value is missing or does not fit.
    template <typename Value>
    Value readValue(const char* shortage);
    template <typename Value>
    [[gnu::noinline]] Value readBytes(const char* shortage);
    template <typename Value>
    void writeValue(Value value, const char* shortage);
    template <typename Value>
    [[gnu::noinline]] void writeBytes(Value value, const char* shortage);

    void requireReadable(unsigned long count, const char* message) const;
    void requireWritable(unsigned long count, const char* message) const;
    [[gnu::noinline]] void report(const char* message) const;

    ILoggingService* logger;
    int size;
    ReservedBytes storage;
    unsigned char* bufferStart;
    unsigned char* bufferEnd;
    unsigned char* readPos = nullptr;
    unsigned char* readPosRestorePoint = nullptr;
    unsigned char* writePos = nullptr;
};
