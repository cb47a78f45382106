// Reads and writes of a ring buffer, as bytes: each operation must do what a plain queue does.

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <deque>

#include "fuzz/EndingLogger.h"
#include "network/RingBuffer.h"
#include "support/Bytes.h"

namespace {

void require(bool condition) {
    if (!condition) {
        std::fputs("the ring buffer and the queue differ\n", stderr);
        std::abort();
    }
}

// The buffer, and the queue that it should be.
class Comparison final {
public:
    explicit Comparison(int size)
        : buffer(size, &logger), room(static_cast<std::size_t>(size) - 1) {}

    void Perform(std::uint8_t operation, std::uint32_t value) {
        performWrite(operation % 16, value);
        performRead(operation % 16, value);
        if (operation % 16 == 15) {
            performOther(value);
        }
        // A block that ends exactly at the end of the storage leaves the write position there; once
        // it is read, the buffer counts as full until the next block. Clients rely on that, so
        // there is nothing to compare.
        if (queue.empty() && buffer.GetNumReadBytesAvailable() == room + 1) {
            throw DocumentedEnd{};
        }
        require(buffer.GetNumReadBytesAvailable() == queue.size());
        require(buffer.GetNumWriteBytesAvailable() == room - queue.size());
    }

private:
    void performWrite(int operation, std::uint32_t value) {
        switch (operation) {
        case 0:
            write(4, value, [&] { buffer.WriteUInt32(value); });
            break;
        case 1:
            write(4, value, [&] { buffer.WriteInt32(static_cast<std::int32_t>(value)); });
            break;
        case 2:
            write(4, value, [&] { buffer.WriteFloat(std::bit_cast<float>(value)); });
            break;
        case 3:
            write(2, value, [&] { buffer.WriteUInt16(static_cast<std::uint16_t>(value)); });
            break;
        case 4:
            write(2, value, [&] { buffer.WriteInt16(static_cast<std::int16_t>(value)); });
            break;
        case 5:
            write(1, value, [&] { buffer.WriteUInt8(static_cast<std::uint8_t>(value)); });
            break;
        case 6:
            write(1, value, [&] { buffer.WriteInt8(static_cast<std::int8_t>(value)); });
            break;
        case 7:
            writeBlock(value % 64);
            break;
        default:
            break;
        }
    }

    void performRead(int operation, std::uint32_t value) {
        switch (operation) {
        case 8:
            require(read(4) == buffer.ReadUInt32());
            break;
        case 9:
            require(read(4) == static_cast<std::uint32_t>(buffer.ReadInt32()));
            break;
        case 10:
            require(read(2) == buffer.ReadUInt16());
            break;
        case 11:
            require(read(2) == static_cast<std::uint16_t>(buffer.ReadInt16()));
            break;
        case 12:
            require(read(1) == buffer.ReadUInt8());
            break;
        case 13:
            require(read(1) == static_cast<std::uint8_t>(buffer.ReadInt8()));
            break;
        case 14:
            readBlock(value % 64);
            break;
        default:
            break;
        }
    }

    template <class Write>
    void write(std::size_t size, std::uint32_t value, Write write) {
        if (queue.size() + size > room) {
            logger.Allow("Error@RingBuffer::Write");
        }
        write();
        const Bytes bytes = u32(value);
        queue.insert(queue.end(), bytes.begin(), bytes.begin() + static_cast<long>(size));
        // What was read may be overwritten now, and cannot be put back.
        taken.clear();
        buffer.SetReadPosRestorePoint();
    }

    void writeBlock(std::size_t size) {
        if (queue.size() + size > room) {
            logger.Allow("Error@RingBuffer::WriteByteArray : GetNumWriteBytesAvailable() < length");
        }
        Bytes block(size);
        std::generate(block.begin(), block.end(), [&] { return ++last; });
        buffer.WriteByteArray(block.data(), block.size());
        queue.insert(queue.end(), block.begin(), block.end());
        taken.clear();
        buffer.SetReadPosRestorePoint();
    }

    // Little-endian.
    std::uint32_t read(std::size_t size) {
        if (queue.size() < size) {
            logger.Allow("Error@RingBuffer::Read");
            return 0;
        }
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value |= std::uint32_t{take()} << (8 * i);
        }
        return value;
    }

    void readBlock(std::size_t most) {
        if (most == 0) {
            logger.Allow("Error@RingBuffer::ReadByteArray : maxlength <= 0");
        }
        Bytes block(most);
        block.resize(buffer.ReadByteArray(block.data(), most));
        require(block.size() == std::min(most, queue.size()));
        for (const unsigned char byte : block) {
            require(byte == take());
        }
    }

    void performOther(std::uint32_t value) {
        switch (value % 4) {
        case 0:
            buffer.SetReadPosRestorePoint();
            taken.clear();
            break;
        case 1:
            buffer.RestoreReadPos();
            queue.insert(queue.begin(), taken.begin(), taken.end());
            taken.clear();
            break;
        case 2:
            buffer.ResetBuffer();
            queue.clear();
            taken.clear();
            break;
        default:
            skip(value / 4 % 64);
            break;
        }
    }

    void skip(std::size_t amount) {
        if (amount > queue.size()) {
            logger.Allow(
                "Error@RingBuffer::MoveReadPosForward : GetNumReadBytesAvailable() < amount");
        }
        buffer.MoveReadPosForward(amount);
        for (std::size_t i = 0; i < amount; ++i) {
            take();
        }
    }

    unsigned char take() {
        const unsigned char byte = queue.front();
        queue.pop_front();
        taken.push_back(byte);
        return byte;
    }

    EndingLogger logger{{}};
    RingBuffer buffer;
    std::size_t room;
    std::deque<unsigned char> queue;
    // Since the restore point.
    std::deque<unsigned char> taken;
    unsigned char last = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kOperation = 5;
    if (size == 0) {
        return 0;
    }
    Comparison comparison(1 + data[0] % 64);
    try {
        for (std::size_t at = 1; at + kOperation <= size; at += kOperation) {
            std::uint32_t value = 0;
            for (std::size_t i = 1; i < kOperation; ++i) {
                value = value << 8 | data[at + i];
            }
            comparison.Perform(data[at], value);
        }
    } catch (const DocumentedEnd&) {
        // The process would have ended.
    }
    return 0;
}
