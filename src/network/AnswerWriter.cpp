#include "network/AnswerWriter.h"

#include <algorithm>
#include <bit>

#include "network/IRingBuffer.h"

namespace {

static_assert(std::endian::native == std::endian::little, "values travel as they are stored");

// A block write that ends at the end of the storage leaves the position there; writing a value
// wraps it. The last byte is therefore written as a value. The caller has checked the room.
void writeWithRoom(IRingBuffer* ringBuffer, unsigned char* bytes, std::size_t count) {
    if (count > 1) {
        ringBuffer->WriteByteArray(bytes, count - 1);
    }
    if (count > 0) {
        ringBuffer->WriteUInt8(bytes[count - 1]);
    }
}

} // namespace

// The block is not initialised: only what was gathered in it is ever read.
AnswerWriter::AnswerWriter(IRingBuffer* ringBuffer) : ringBuffer(ringBuffer) {
    startBlock();
}

AnswerWriter::~AnswerWriter() {
    handOver();
}

void AnswerWriter::WriteFloats(const float* values, std::size_t count) {
    putAll(values, count);
}

void AnswerWriter::WriteInt32s(const std::int32_t* values, std::size_t count) {
    putAll(values, count);
}

void AnswerWriter::WriteByteArray(unsigned char* bytes, std::size_t length) {
    handOver();
    ringBuffer->WriteByteArray(bytes, length);
    startBlock();
}

std::size_t AnswerWriter::Room() const {
    return ringBuffer->GetNumWriteBytesAvailable() - gathered();
}

template <typename Value>
void AnswerWriter::putAll(const Value* values, std::size_t count) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(values);
    const std::size_t size = count * sizeof(Value);
    if (size <= static_cast<std::size_t>(end - position)) {
        position = std::copy_n(bytes, size, position);
    } else if (size <= Room()) {
        handOver();
        writeWithRoom(ringBuffer, const_cast<unsigned char*>(bytes), size);
        startBlock();
    } else {
        std::for_each_n(values, count, [this](Value value) { put(value); });
    }
}

void AnswerWriter::putDirectly(float value) {
    handOver();
    ringBuffer->WriteFloat(value);
    startBlock();
}

void AnswerWriter::putDirectly(std::int32_t value) {
    handOver();
    ringBuffer->WriteInt32(value);
    startBlock();
}

void AnswerWriter::putDirectly(std::uint32_t value) {
    handOver();
    ringBuffer->WriteUInt32(value);
    startBlock();
}

void AnswerWriter::putDirectly(std::uint8_t value) {
    handOver();
    ringBuffer->WriteUInt8(value);
    startBlock();
}

void AnswerWriter::handOver() {
    writeWithRoom(ringBuffer, block.data(), gathered());
    position = block.data();
}

void AnswerWriter::startBlock() {
    const std::size_t room = ringBuffer->GetNumWriteBytesAvailable();
    position = block.data();
    end = position + std::min(block.size(), room);
}
