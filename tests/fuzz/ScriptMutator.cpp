#include "fuzz/ScriptMutator.h"

#include <algorithm>
#include <iterator>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

constexpr std::size_t kGrowth = 64;
constexpr std::size_t kInputRecord = 488;
constexpr std::size_t kOutputRecord = 116;
constexpr std::size_t kDefinitionsHeader = 20;
constexpr std::size_t kDataHeader = 12;
constexpr std::size_t kDataItem = 8;

Script::iterator position(Script& script, std::size_t index) {
    return script.begin() + static_cast<Script::difference_type>(index);
}

std::uint32_t wordAt(const Bytes& bytes, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        word |= std::uint32_t{bytes[offset + i]} << (8 * i);
    }
    return word;
}

void putWord(Bytes& bytes, std::size_t offset, std::size_t value) {
    const Bytes word = u32(static_cast<std::uint32_t>(value));
    std::copy(word.begin(), word.end(),
              bytes.begin() + static_cast<Bytes::difference_type>(offset));
}

// Makes sizes and counts match the bytes; cuts off the rest.
void mendDefinitions(Bytes& bytes, std::size_t begin) {
    const std::size_t room = bytes.size() - begin - kDefinitionsHeader;
    const auto inputs = std::min<std::size_t>(wordAt(bytes, begin + 8), room / kInputRecord);
    const std::size_t outputs = (room - inputs * kInputRecord) / kOutputRecord;
    putWord(bytes, begin + 4, kInputRecord);
    putWord(bytes, begin + 8, inputs);
    putWord(bytes, begin + 12, kOutputRecord);
    putWord(bytes, begin + 16, outputs);
    bytes.resize(begin + kDefinitionsHeader + inputs * kInputRecord + outputs * kOutputRecord);
}

void mendData(Bytes& bytes, std::size_t begin) {
    const std::size_t items = (bytes.size() - begin - kDataHeader) / kDataItem;
    putWord(bytes, begin + 4, kDataItem);
    putWord(bytes, begin + 8, items);
    bytes.resize(begin + kDataHeader + items * kDataItem);
}

// A Tarnel message is at the start, or after its identification.
void mend(Bytes& bytes) {
    for (const std::size_t begin : {std::size_t{0}, std::size_t{4}}) {
        if (bytes.size() < begin + kDefinitionsHeader) {
            return;
        }
        const std::uint32_t specifier = wordAt(bytes, begin);
        if (specifier == 0xDDEEFFC0) {
            mendDefinitions(bytes, begin);
        } else if (specifier == 0xEFBEADDE) {
            mendData(bytes, begin);
        }
    }
}

} // namespace

std::size_t ScriptMutator::Mutate(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                  unsigned int seed) {
    MessageMaker maker(seed);
    if (maker.Below(4) == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    Script script = parseScript(data, size);
    change(script, maker);
    const Bytes file = toBytes(script);
    if (file.empty() || file.size() > maxSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    std::copy(file.begin(), file.end(), data);
    return file.size();
}

void ScriptMutator::change(Script& script, MessageMaker& maker) {
    const std::size_t choice = maker.Below(10);
    if (script.empty() || choice < 3) {
        addMessage(script, maker);
        return;
    }
    const std::size_t at = maker.Below(script.size());
    switch (choice) {
    case 3:
        script.erase(position(script, at));
        break;
    case 4:
        std::swap(script[at], script[maker.Below(script.size())]);
        break;
    case 5: {
        const Step copy = script[at];
        script.insert(position(script, maker.Below(script.size() + 1)), copy);
        break;
    }
    case 6:
        addStep(script, maker);
        break;
    case 7:
        tear(script, at, maker);
        break;
    default:
        changeBytes(script[at].bytes, maker);
        break;
    }
}

void ScriptMutator::addMessage(Script& script, MessageMaker& maker) {
    const std::size_t at = maker.Below(script.size() + 1);
    const auto client = static_cast<std::uint8_t>(maker.Below(4) == 0 ? maker.Below(4) : 0);
    // Half of the time, long enough for an answer.
    const std::size_t ticks = maker.Below(4);
    Script added = {{Step::Kind::Send, client, (maker.*makeMessage)()}};
    added.insert(added.end(), ticks, {Step::Kind::Tick, 0, {}});
    script.insert(position(script, at), added.begin(), added.end());
}

void ScriptMutator::addStep(Script& script, MessageMaker& maker) {
    const auto kinds = static_cast<std::size_t>(Step::Kind::Count);
    Step step{static_cast<Step::Kind>(1 + maker.Below(kinds - 1)),
              static_cast<std::uint8_t>(maker.Below(256)),
              {}};
    script.insert(position(script, maker.Below(script.size() + 1)), std::move(step));
}

void ScriptMutator::tear(Script& script, std::size_t at, MessageMaker& maker) {
    Bytes& whole = script[at].bytes;
    if (whole.empty()) {
        return;
    }
    const auto middle =
        whole.begin() + static_cast<Bytes::difference_type>(maker.Below(whole.size()));
    Script rest = {{Step::Kind::Tick, 0, {}},
                   {script[at].kind, script[at].argument, Bytes(middle, whole.end())}};
    whole.erase(middle, whole.end());
    script.insert(position(script, at + 1), rest.begin(), rest.end());
}

void ScriptMutator::changeBytes(Bytes& bytes, MessageMaker& maker) {
    const std::size_t size = bytes.size();
    bytes.resize(size + kGrowth);
    bytes.resize(LLVMFuzzerMutate(bytes.data(), size, bytes.size()));
    // Not always, so that counts which disagree are tried as well.
    if (maker.Below(2) == 0) {
        mend(bytes);
    }
}
