#include "fuzz/MessageMaker.h"

#include <array>
#include <limits>

#include "support/VelmarMessages.h"

namespace {

constexpr std::array kNames = {"sim/int",    "sim/float",  "sim/ints",  "sim/floats",
                               "sim/fixed",  "sim/up",     "sim/down",  "kyr/int",
                               "kyr/float",  "kyr/ints",   "kyr/press", "kyr/unknown",
                               "sim/absent", "kyr/floats", "",          "kyr/"};

constexpr std::array<std::int32_t, 14> kNumbers = {0,     1,
                                                   2,     3,
                                                   4,     -1,
                                                   65535, 65536,
                                                   100,   std::numeric_limits<std::int32_t>::max(),
                                                   255,   32767,
                                                   16384, std::numeric_limits<std::int32_t>::min()};

constexpr std::array kReals = {0.0F,
                               1.0F,
                               -1.0F,
                               0.5F,
                               65535.0F,
                               std::numeric_limits<float>::max(),
                               std::numeric_limits<float>::infinity(),
                               std::numeric_limits<float>::quiet_NaN(),
                               std::numeric_limits<float>::denorm_min()};

constexpr std::array<std::int32_t, 7> kActions = {0, 1, 2, 7, 1001, 1002, 1005};

} // namespace

Bytes MessageMaker::Request() {
    return oneIn(2) ? tarnelRequest(Tarnel()) : velmarRequest({Velmar()});
}

Bytes MessageMaker::Tarnel() {
    switch (Below(8)) {
    case 0:
        return versionMessage();
    case 1:
    case 2:
    case 3:
        return data();
    default:
        return definitions();
    }
}

Bytes MessageMaker::definitions() {
    std::vector<InputRecord> inputs(Below(4));
    for (InputRecord& record : inputs) {
        record = input();
    }
    std::vector<OutputRecord> outputs(Below(6));
    for (OutputRecord& record : outputs) {
        record = output();
    }
    return definitionsMessage(inputs, outputs);
}

InputRecord MessageMaker::input() {
    InputRecord record;
    record.action = action();
    record.targetIndex = elements();
    record.fixedInt = number();
    record.repeatInterval = number();
    record.intMinimum = number();
    record.intMaximum = number();
    record.targetType = type();
    record.scaling = static_cast<std::int32_t>(Below(5));
    record.rangeType = type();
    record.rangeIndex = elements();
    record.condition = static_cast<std::int32_t>(Below(6));
    record.fixedFloat = real();
    record.floatMinimum = real();
    record.floatMaximum = real();
    record.useFixed = oneIn(3) ? 1 : 0;
    record.hold = oneIn(3) ? 1 : 0;
    record.held = oneIn(8) ? number() : 0;
    record.rangeMinimumName = name();
    record.rangeMaximumName = oneIn(2) ? record.rangeMinimumName : name();
    record.target = name();
    record.conditionName = name();
    record.conditionType = type();
    record.conditionIndex = elements();
    return record;
}

OutputRecord MessageMaker::output() {
    OutputRecord record;
    record.id = static_cast<std::uint32_t>(action());
    record.name = name();
    record.type = type();
    record.first = elements();
    record.count = elements();
    return record;
}

Bytes MessageMaker::data() {
    std::vector<std::pair<std::uint32_t, std::int32_t>> items(Below(5));
    for (auto& [id, value] : items) {
        id = static_cast<std::uint32_t>(action());
        value = number();
    }
    return dataMessage(items);
}

Bytes MessageMaker::Velmar() {
    Bytes packets;
    for (std::size_t i = Below(4) + 1; i > 0; --i) {
        packets = join({packets, velmarPacket()});
    }
    return packets;
}

Bytes MessageMaker::velmarPacket() {
    const auto id = static_cast<std::uint32_t>(Below(4));
    switch (Below(10)) {
    case 0:
    case 1:
        return registerDataref(id, static_cast<std::uint32_t>(type()),
                               static_cast<std::uint32_t>(elements()), name());
    case 2:
        return unregisterDataref(id);
    case 3:
        return registerCommand(id, name());
    case 4:
        return unregisterCommand(id);
    case 5:
        return readDataref(id);
    case 6:
    case 7:
        return writeDataref(id, velmarValue());
    case 8:
        return runCommand(id, static_cast<std::uint8_t>(Below(4)));
    default:
        return pollCommandStates();
    }
}

Bytes MessageMaker::velmarValue() {
    switch (Below(4)) {
    case 0:
        return {static_cast<unsigned char>(Below(256))};
    case 1:
        return f32(real());
    case 2:
        return i32(number());
    default:
        return zeros(4 * Below(5));
    }
}

std::int32_t MessageMaker::action() {
    return kActions[Below(kActions.size())];
}

std::int32_t MessageMaker::number() {
    return oneIn(4) ? static_cast<std::int32_t>(random()) : kNumbers[Below(kNumbers.size())];
}

// Mostly the true number.
std::int32_t MessageMaker::elements() {
    return oneIn(8) ? number() : static_cast<std::int32_t>(Below(6));
}

float MessageMaker::real() {
    return kReals[Below(kReals.size())];
}

std::string MessageMaker::name() {
    return oneIn(16) ? std::string(Below(120), 'x') : kNames[Below(kNames.size())];
}
