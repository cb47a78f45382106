// The ring buffer: typed values and blocks, against memcpy of the same sizes.

#include <cstring>
#include <numeric>
#include <utility>

#include "bench/BenchWorld.h"
#include "bench/Figure.h"

namespace {

// As the protocols see it: through its interface, without knowing its class.
IRingBuffer& throughInterface(RingBuffer& buffer) {
    IRingBuffer* hidden = &buffer;
    benchmark::DoNotOptimize(hidden);
    return *hidden;
}

class RingBufferCase {
public:
    explicit RingBufferCase(std::size_t size)
        : source(size), target(size), buffer(throughInterface(world.out)) {
        std::iota(source.begin(), source.end(), static_cast<unsigned char>(1));
    }

protected:
    // The content of the buffer; reading does not remove it.
    Bytes content() {
        world.out.ResetBuffer();
        const unsigned char* const start = buffer.GetReadPosAddress();
        return {start, start + source.size()};
    }

    BenchWorld world;
    Bytes source;
    Bytes target;
    IRingBuffer& buffer;
};

// The compiler must not join the copies into a large one: callers have one value at a time, too.
template <typename Value>
void copyOneByOne(const Bytes& source, Bytes& target) {
    unsigned char* to = target.data();
    for (const unsigned char *from = source.data(), *end = from + source.size(); from != end;
         from += sizeof(Value), to += sizeof(Value)) {
        std::memcpy(to, from, sizeof(Value));
        benchmark::ClobberMemory();
    }
}

// `count` values one by one.
template <typename Value, void (IRingBuffer::*operation)(Value)>
class TypedWrite final : public RingBufferCase {
public:
    explicit TypedWrite(std::int64_t count)
        : RingBufferCase(static_cast<std::size_t>(count) * sizeof(Value)) {}

    void Check() {
        Ours();
        Floor();
        requireSameBytes(content(), target);
    }

    void Ours() {
        buffer.ResetBuffer();
        for (std::size_t at = 0; at < source.size(); at += sizeof(Value)) {
            Value value{};
            std::memcpy(&value, source.data() + at, sizeof(value));
            (buffer.*operation)(value);
        }
    }

    void Floor() { copyOneByOne<Value>(source, target); }
};

template <typename Value, Value (IRingBuffer::*operation)()>
class TypedRead final : public RingBufferCase {
public:
    explicit TypedRead(std::int64_t count)
        : RingBufferCase(static_cast<std::size_t>(count) * sizeof(Value)) {
        buffer.ResetBuffer();
        buffer.WriteByteArray(source.data(), source.size());
    }

    void Check() {
        Ours();
        const Bytes ours = std::exchange(target, Bytes(target.size()));
        Floor();
        requireSameBytes(ours, target);
    }

    // Going back to the start costs what it costs a parser that goes back.
    void Ours() {
        buffer.RestoreReadPos();
        for (std::size_t at = 0; at < target.size(); at += sizeof(Value)) {
            const Value value = (buffer.*operation)();
            std::memcpy(target.data() + at, &value, sizeof(value));
        }
    }

    void Floor() { copyOneByOne<Value>(source, target); }
};

// One block of `count` bytes.
class BlockWrite final : public RingBufferCase {
public:
    explicit BlockWrite(std::int64_t count) : RingBufferCase(static_cast<std::size_t>(count)) {}

    void Check() {
        Ours();
        Floor();
        requireSameBytes(content(), target);
    }

    void Ours() {
        buffer.ResetBuffer();
        buffer.WriteByteArray(source.data(), source.size());
    }

    void Floor() { std::memcpy(target.data(), source.data(), source.size()); }
};

class BlockRead final : public RingBufferCase {
public:
    explicit BlockRead(std::int64_t count) : RingBufferCase(static_cast<std::size_t>(count)) {
        buffer.ResetBuffer();
        buffer.WriteByteArray(source.data(), source.size());
    }

    void Check() {
        Ours();
        requireSameBytes(target, source);
    }

    void Ours() {
        buffer.RestoreReadPos();
        buffer.ReadByteArray(target.data(), target.size());
    }

    void Floor() { std::memcpy(target.data(), source.data(), source.size()); }
};

template <typename Case>
void addFigureOf(const std::string& name) {
    addFigure("RingBuffer/" + name, {1, 10, 100, 1000, 10000},
              [](std::int64_t count) { return Case(count); });
}

} // namespace

void addFigures() {
    addFigureOf<TypedWrite<float, &IRingBuffer::WriteFloat>>("write_float");
    addFigureOf<TypedWrite<std::int32_t, &IRingBuffer::WriteInt32>>("write_int32");
    addFigureOf<TypedWrite<std::uint32_t, &IRingBuffer::WriteUInt32>>("write_uint32");
    addFigureOf<TypedWrite<std::int16_t, &IRingBuffer::WriteInt16>>("write_int16");
    addFigureOf<TypedWrite<std::uint16_t, &IRingBuffer::WriteUInt16>>("write_uint16");
    addFigureOf<TypedWrite<std::int8_t, &IRingBuffer::WriteInt8>>("write_int8");
    addFigureOf<TypedWrite<std::uint8_t, &IRingBuffer::WriteUInt8>>("write_uint8");
    addFigureOf<TypedRead<float, &IRingBuffer::ReadFloat>>("read_float");
    addFigureOf<TypedRead<std::int32_t, &IRingBuffer::ReadInt32>>("read_int32");
    addFigureOf<TypedRead<std::uint32_t, &IRingBuffer::ReadUInt32>>("read_uint32");
    addFigureOf<TypedRead<std::int16_t, &IRingBuffer::ReadInt16>>("read_int16");
    addFigureOf<TypedRead<std::uint16_t, &IRingBuffer::ReadUInt16>>("read_uint16");
    addFigureOf<TypedRead<std::int8_t, &IRingBuffer::ReadInt8>>("read_int8");
    addFigureOf<TypedRead<std::uint8_t, &IRingBuffer::ReadUInt8>>("read_uint8");
    addFigureOf<BlockWrite>("write_block");
    addFigureOf<BlockRead>("read_block");
}
