#pragma once

#include <cstddef>

#include "network/RingBuffer.h"

// Counts the operations on a ring buffer and the bytes of its block copies.
class CountingRingBuffer final : public IRingBuffer {
public:
    explicit CountingRingBuffer(RingBuffer& ringBuffer) : buffer(ringBuffer) {}

    std::size_t Operations() const { return operations; }

    void WriteByteArray(unsigned char* src, unsigned long length) override {
        operations += length;
        counted().WriteByteArray(src, length);
    }
    unsigned long ReadByteArray(unsigned char* dst, unsigned long maxlength) override {
        operations += maxlength;
        return counted().ReadByteArray(dst, maxlength);
    }
    unsigned long GetNumReadBytesAvailable() const override {
        return counted().GetNumReadBytesAvailable();
    }
    unsigned long GetNumWriteBytesAvailable() const override {
        return counted().GetNumWriteBytesAvailable();
    }
    void SetReadPosRestorePoint() override { counted().SetReadPosRestorePoint(); }
    void RestoreReadPos() override { counted().RestoreReadPos(); }
    void ResetBuffer() override { counted().ResetBuffer(); }
    unsigned char* GetReadPosAddress() override { return counted().GetReadPosAddress(); }
    void MoveReadPosForward(unsigned long amount) override { counted().MoveReadPosForward(amount); }

    float ReadFloat() override { return counted().ReadFloat(); }
    std::int32_t ReadInt32() override { return counted().ReadInt32(); }
    std::uint32_t ReadUInt32() override { return counted().ReadUInt32(); }
    std::int16_t ReadInt16() override { return counted().ReadInt16(); }
    std::uint16_t ReadUInt16() override { return counted().ReadUInt16(); }
    std::int8_t ReadInt8() override { return counted().ReadInt8(); }
    std::uint8_t ReadUInt8() override { return counted().ReadUInt8(); }

    void WriteFloat(float value) override { counted().WriteFloat(value); }
    void WriteInt32(std::int32_t value) override { counted().WriteInt32(value); }
    void WriteUInt32(std::uint32_t value) override { counted().WriteUInt32(value); }
    void WriteInt16(std::int16_t value) override { counted().WriteInt16(value); }
    void WriteUInt16(std::uint16_t value) override { counted().WriteUInt16(value); }
    void WriteInt8(std::int8_t value) override { counted().WriteInt8(value); }
    void WriteUInt8(std::uint8_t value) override { counted().WriteUInt8(value); }

private:
    RingBuffer& counted() const {
        ++operations;
        return buffer;
    }

    RingBuffer& buffer;
    mutable std::size_t operations = 0;
};
