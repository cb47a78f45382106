#include "bench/BareBuffer.h"

#include <cstring>
#include <vector>

namespace {

class BareBuffer final : public IBareBuffer {
public:
    explicit BareBuffer(std::size_t size) : storage(size), position(storage.data()) {}

    void Write(std::uint32_t value) override {
        std::memcpy(position, &value, sizeof(value));
        position += sizeof(value);
    }
    void Rewind() override { position = storage.data(); }

private:
    std::vector<unsigned char> storage;
    unsigned char* position;
};

} // namespace

std::unique_ptr<IBareBuffer> makeBareBuffer(std::size_t size) {
    return std::make_unique<BareBuffer>(size);
}
