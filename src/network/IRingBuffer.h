#pragma once

#include <cstdint>

// A byte queue with typed access. All network traffic passes through it.
//
// Values travel little-endian, without padding or alignment; a float as its IEEE 754
// single-precision bit pattern. Callers check the counts before they read or write: a shortage is a
// broken invariant that ends the process.
class IRingBuffer {
public:
    virtual ~IRingBuffer() = default;

    virtual void WriteByteArray(unsigned char* src, unsigned long length) = 0;
    // Reads what is there, at most `maxlength` bytes, and returns how many. `maxlength` is not 0.
    virtual unsigned long ReadByteArray(unsigned char* dst, unsigned long maxlength) = 0;

    virtual unsigned long GetNumReadBytesAvailable() const = 0;
    virtual unsigned long GetNumWriteBytesAvailable() const = 0;

    // A parser that reads ahead into an incomplete message goes back to the saved position.
    virtual void SetReadPosRestorePoint() = 0;
    virtual void RestoreReadPos() = 0;
    // Empties the buffer and returns to the start of its storage, the restore point included.
    virtual void ResetBuffer() = 0;

    // For log messages only.
    virtual unsigned char* GetReadPosAddress() = 0;
    virtual void MoveReadPosForward(unsigned long amount) = 0;

    virtual float ReadFloat() = 0;
    virtual std::int32_t ReadInt32() = 0;
    virtual std::uint32_t ReadUInt32() = 0;
    virtual std::int16_t ReadInt16() = 0;
    virtual std::uint16_t ReadUInt16() = 0;
    virtual std::int8_t ReadInt8() = 0;
    virtual std::uint8_t ReadUInt8() = 0;

    virtual void WriteFloat(float value) = 0;
    virtual void WriteInt32(std::int32_t value) = 0;
    virtual void WriteUInt32(std::uint32_t value) = 0;
    virtual void WriteInt16(std::int16_t value) = 0;
    virtual void WriteUInt16(std::uint16_t value) = 0;
    virtual void WriteInt8(std::int8_t value) = 0;
    virtual void WriteUInt8(std::uint8_t value) = 0;
};
