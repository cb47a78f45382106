#include "fuzz/Script.h"

#include <algorithm>

namespace {

constexpr std::size_t kLongestSend = 0xFFFF;
// Most scripts have no more; room for them at once saves allocations.
constexpr std::size_t kUsualSteps = 64;
constexpr std::size_t kUsualSize = 4096;

// The rest of a file that is read from its front.
class Reader final {
public:
    Reader(const std::uint8_t* data, std::size_t size) : next(data), end(data + size) {}

    bool IsAtEnd() const { return next == end; }
    std::uint8_t Byte() { return IsAtEnd() ? std::uint8_t{0} : *next++; }

    Bytes Take(std::size_t wanted) {
        const auto count = std::min(wanted, static_cast<std::size_t>(end - next));
        const std::uint8_t* const begin = next;
        next += count;
        return {begin, next};
    }

private:
    const std::uint8_t* next;
    const std::uint8_t* end;
};

} // namespace

Script parseScript(const std::uint8_t* data, std::size_t size) {
    Script script;
    script.reserve(kUsualSteps);
    Reader reader(data, size);
    while (!reader.IsAtEnd()) {
        Step& step = script.emplace_back();
        step.kind = static_cast<Step::Kind>(reader.Byte() % static_cast<int>(Step::Kind::Count));
        step.argument = reader.Byte();
        if (step.kind == Step::Kind::Send) {
            const std::size_t low = reader.Byte();
            const std::size_t high = reader.Byte();
            step.bytes = reader.Take(low | high << 8);
        }
    }
    return script;
}

Bytes toBytes(const Script& script) {
    Bytes file;
    file.reserve(kUsualSize);
    for (const Step& step : script) {
        file.push_back(static_cast<unsigned char>(step.kind));
        file.push_back(step.argument);
        if (step.kind == Step::Kind::Send) {
            const std::size_t length = std::min(step.bytes.size(), kLongestSend);
            file.push_back(static_cast<unsigned char>(length));
            file.push_back(static_cast<unsigned char>(length >> 8));
            file.insert(file.end(), step.bytes.begin(),
                        step.bytes.begin() + static_cast<Bytes::difference_type>(length));
        }
    }
    return file;
}
