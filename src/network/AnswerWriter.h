#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

class IRingBuffer;

// Gathers the values of an answer and hands them to the ring buffer in blocks, which is much
// cheaper than one call per value.
//
// The ring buffer ends up exactly as if every value had been written separately: the same bytes and
// positions, and if it is full, the same report at the same value. Only values that fit are
// gathered. Nothing else may use the ring buffer meanwhile.
class AnswerWriter final {
public:
    explicit AnswerWriter(IRingBuffer* ringBuffer);
    // Hands over what is left.
    ~AnswerWriter();
    AnswerWriter(const AnswerWriter&) = delete;
    AnswerWriter& operator=(const AnswerWriter&) = delete;

    void WriteFloat(float value) { put(value); }
    void WriteInt32(std::int32_t value) { put(value); }
    void WriteUInt32(std::uint32_t value) { put(value); }
    void WriteUInt8(std::uint8_t value) { put(value); }

    // `count` values in a row.
    void WriteFloats(const float* values, std::size_t count);
    void WriteInt32s(const std::int32_t* values, std::size_t count);
    // The ring buffer's own block write.
    void WriteByteArray(unsigned char* bytes, std::size_t length);

    // How many more bytes the ring buffer can take.
    std::size_t Room() const;

private:
    template <typename Value>
    void put(Value value) {
        if (static_cast<std::size_t>(end - position) < sizeof(value)) [[unlikely]] {
            putDirectly(value);
            return;
        }
        std::memcpy(position, &value, sizeof(value));
        position += sizeof(value);
    }
    template <typename Value>
    void putAll(const Value* values, std::size_t count);

    // For a full block, or if the ring buffer has little room.
    void putDirectly(float value);
    void putDirectly(std::int32_t value);
    void putDirectly(std::uint32_t value);
    void putDirectly(std::uint8_t value);

    std::size_t gathered() const { return static_cast<std::size_t>(position - block.data()); }
    void handOver();
    void startBlock();

    IRingBuffer* ringBuffer;
    std::array<unsigned char, 4096> block;
    unsigned char* position = nullptr;
    // The end of the block, or of the room in the ring buffer.
    unsigned char* end = nullptr;
};
