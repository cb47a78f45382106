#include "support/TarnelMessages.h"

#include <algorithm>

namespace {

constexpr std::size_t kInputRecordSize = 488;
constexpr std::size_t kOutputRecordSize = 116;
constexpr std::size_t kNameSize = 100;

void put(Bytes& record, std::size_t offset, const Bytes& field) {
    std::copy(field.begin(), field.end(),
              record.begin() + static_cast<Bytes::difference_type>(offset));
}

void append(Bytes& message, const Bytes& part) {
    message.insert(message.end(), part.begin(), part.end());
}

Bytes nameField(const std::string& text) {
    return name(text.substr(0, kNameSize), kNameSize);
}

std::uint32_t countOf(std::size_t size) {
    return static_cast<std::uint32_t>(size);
}

} // namespace

Bytes toBytes(const InputRecord& record) {
    Bytes bytes(kInputRecordSize);
    put(bytes, 0, i32(record.action));
    put(bytes, 4, i32(record.reserved4));
    put(bytes, 8, i32(record.reserved8));
    put(bytes, 12, i32(record.targetIndex));
    put(bytes, 16, i32(record.fixedInt));
    put(bytes, 20, i32(record.repeatInterval));
    put(bytes, 24, i32(record.intMinimum));
    put(bytes, 28, i32(record.intMaximum));
    put(bytes, 32, i32(record.targetType));
    put(bytes, 36, i32(record.scaling));
    put(bytes, 40, i32(record.rangeType));
    put(bytes, 44, i32(record.rangeIndex));
    put(bytes, 48, i32(record.condition));
    put(bytes, 52, f32(record.fixedFloat));
    put(bytes, 56, f32(record.floatMinimum));
    put(bytes, 60, f32(record.floatMaximum));
    put(bytes, 64, i32(record.useFixed));
    put(bytes, 68, i32(record.hold));
    put(bytes, 72, i32(record.reserved72));
    put(bytes, 76, i32(record.held));
    put(bytes, 80, nameField(record.rangeMinimumName));
    put(bytes, 180, nameField(record.rangeMaximumName));
    put(bytes, 280, nameField(record.target));
    put(bytes, 380, nameField(record.conditionName));
    put(bytes, 480, i32(record.conditionType));
    put(bytes, 484, i32(record.conditionIndex));
    return bytes;
}

Bytes toBytes(const OutputRecord& record) {
    Bytes bytes(kOutputRecordSize);
    put(bytes, 0, u32(record.id));
    put(bytes, 4, nameField(record.name));
    put(bytes, 104, i32(record.type));
    put(bytes, 108, i32(record.first));
    put(bytes, 112, i32(record.count));
    return bytes;
}

Bytes versionMessage() {
    return {0xB1, 0x6B, 0x00, 0xB5};
}

Bytes definitionsMessage(const std::vector<InputRecord>& inputs,
                         const std::vector<OutputRecord>& outputs) {
    Bytes message = join({{0xC0, 0xFF, 0xEE, 0xDD},
                          u32(kInputRecordSize),
                          u32(countOf(inputs.size())),
                          u32(kOutputRecordSize),
                          u32(countOf(outputs.size()))});
    for (const InputRecord& input : inputs) {
        append(message, toBytes(input));
    }
    for (const OutputRecord& output : outputs) {
        append(message, toBytes(output));
    }
    return message;
}

Bytes dataMessage(const std::vector<std::pair<std::uint32_t, std::int32_t>>& items) {
    Bytes message = join({{0xDE, 0xAD, 0xBE, 0xEF}, u32(8), u32(countOf(items.size()))});
    for (const auto& [action, value] : items) {
        append(message, join({u32(action), i32(value)}));
    }
    return message;
}

Bytes tarnelRequest(const Bytes& message) {
    return join({kTarnel, message});
}
