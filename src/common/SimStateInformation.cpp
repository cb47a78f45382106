#include "common/SimStateInformation.h"

#include <array>
#include <bit>

#include "XPLMDataAccess.h"

namespace {

constexpr const char* kDescriptionDataref = "sim/aircraft/view/acf_descrip";
constexpr unsigned int kDescriptionBytes = 100;

constexpr std::uint32_t kC1 = 0xcc9e2d51;
constexpr std::uint32_t kC2 = 0x1b873593;

std::uint32_t byteAt(const char* data, unsigned int index) {
    return static_cast<unsigned char>(data[index]);
}

std::uint32_t littleEndianWord(const char* data, unsigned int index) {
    return byteAt(data, index) | byteAt(data, index + 1) << 8 | byteAt(data, index + 2) << 16 |
           byteAt(data, index + 3) << 24;
}

std::uint32_t scramble(std::uint32_t k) {
    return std::rotl(k * kC1, 15) * kC2;
}

std::uint32_t tailWord(const char* tail, unsigned int length) {
    std::uint32_t k = 0;
    for (unsigned int i = 0; i < length; ++i) {
        k |= byteAt(tail, i) << (8 * i);
    }
    return k;
}

std::uint32_t avalanche(std::uint32_t h) {
    h ^= h >> 16;
    h *= 0x85ebca6b;
    h ^= h >> 13;
    h *= 0xc2b2ae35;
    h ^= h >> 16;
    return h;
}

} // namespace

void SimStateInformation::SetPlaneLoaded(bool loaded) {
    planeLoaded = loaded;
}

bool SimStateInformation::IsPlaneLoaded() const {
    return planeLoaded;
}

std::uint32_t SimStateInformation::GetPlaneId() const {
    return planeId;
}

void SimStateInformation::ReadPlaneId() {
    std::array<char, kDescriptionBytes + 1> description{};
    const XPLMDataRef handle = XPLMFindDataRef(kDescriptionDataref);
    XPLMGetDatab(handle, description.data(), 0, static_cast<int>(kDescriptionBytes));
    // Always the whole 100 bytes: a shorter description is hashed with its zero padding.
    planeId = getMurmur32Hash(description.data(), kDescriptionBytes, 0);
}

std::uint32_t SimStateInformation::getMurmur32Hash(const char* data, unsigned int length,
                                                   unsigned int seed) {
    std::uint32_t h = seed;
    const unsigned int remainder = length % 4;
    const unsigned int wholeBytes = length - remainder;
    for (unsigned int i = 0; i < wholeBytes; i += 4) {
        h ^= scramble(littleEndianWord(data, i));
        h = std::rotl(h, 13) * 5 + 0xe6546b64;
    }
    if (remainder > 0) {
        h ^= scramble(tailWord(data + wholeBytes, remainder));
    }
    h ^= remainder;
    return avalanche(h);
}
