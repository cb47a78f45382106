// The client library's decoders: whatever a server or a beacon sends, a decoder returns what was
// declared or reports an unexpected answer, and never reads beyond the end.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "Beacon.h"
#include "ByteReader.h"
#include "UnexpectedAnswer.h"
#include "tarnel/Wire.h"
#include "velmar/Wire.h"

namespace {

using orvane::detail::ByteReader;
using orvane::detail::UnexpectedAnswer;
using Input = std::span<const std::uint8_t>;

namespace tarnel = orvane::tarnel;
namespace velmar = orvane::velmar;

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

// Takes the first byte of the input, 0 when there is none.
std::uint8_t takeByte(Input& input) {
    if (input.empty()) {
        return 0;
    }
    const std::uint8_t first = input.front();
    input = input.subspan(1);
    return first;
}

tarnel::Output makeOutput(tarnel::OutputId id, std::uint8_t choice) {
    const int count = 1 + choice / 8;
    switch (choice % 5) {
    case 0:
        return tarnel::Output::ofInt(id, "a");
    case 1:
        return tarnel::Output::ofFloat(id, "b");
    case 2:
        return tarnel::Output::ofIntArray(id, "c", count);
    case 3:
        return tarnel::Output::ofFloatArray(id, "d", count);
    default:
        return tarnel::Output::ofCommand(id, "kyr/" + std::to_string(id));
    }
}

// Up to seven outputs, which the input chooses, and the answer.
void decodeTarnel(Input input) {
    tarnel::Definitions definitions;
    const int count = takeByte(input) % 8;
    for (int index = 0; index < count; ++index) {
        definitions.add(makeOutput(static_cast<tarnel::OutputId>(index), takeByte(input)));
    }
    const auto& outputs = definitions.outputs();
    const tarnel::Answer answer = tarnel::wire::readAnswer(input, outputs);
    require(answer.outputs.size() == outputs.size(), "an output is missing");
    require(input.size() + 4 == definitions.answerSize() ||
                input.size() == tarnel::wire::longestAnswer(outputs),
            "an answer of another size was accepted");
}

velmar::Value decodeValue(ByteReader& reader, std::uint8_t choice) {
    const auto type = static_cast<velmar::Type>(1 + choice % 5);
    const velmar::Dataref dataref{"a", type, static_cast<std::uint32_t>(1 + choice / 8)};
    velmar::Value value = velmar::wire::readReadReply(reader, 1, dataref);
    require(velmar::typeOf(value) == type, "a value of another type");
    return value;
}

// The first bytes choose the packets that were sent; the numbers are all 1.
void decodeVelmar(Input input) {
    const std::size_t count = takeByte(input) % 8U;
    const Input choices = input.subspan(0, std::min(input.size(), count));
    ByteReader reader(input.subspan(choices.size()));
    for (const std::uint8_t choice : choices) {
        switch (choice % 8) {
        case 0:
            velmar::wire::readRegisterDatarefReply(reader, 1);
            break;
        case 1:
            velmar::wire::readRegisterCommandReply(reader, 1);
            break;
        case 2:
            velmar::wire::readUnregisterDatarefReply(reader, 1);
            break;
        case 3:
            velmar::wire::readUnregisterCommandReply(reader, 1);
            break;
        case 4:
            velmar::wire::readWriteReply(reader, 1);
            break;
        case 5:
            velmar::wire::readPollReply(reader);
            break;
        default:
            decodeValue(reader, choice);
        }
    }
    reader.expectEnd();
}

void decodeBeacon(Input input) {
    if (const auto simulator = orvane::detail::parseBeacon(input)) {
        require(simulator->computer.size() <= 500, "a computer's name is too long");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    try {
        switch (takeByte(input) % 3) {
        case 0:
            decodeTarnel(input);
            break;
        case 1:
            decodeVelmar(input);
            break;
        default:
            decodeBeacon(input);
            tarnel::wire::readVersion(input);
        }
    } catch (const UnexpectedAnswer&) {
        return 0;
    }
    return 0;
}
