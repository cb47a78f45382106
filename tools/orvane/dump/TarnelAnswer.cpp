#include "tools/orvane/dump/TarnelAnswer.h"

#include "tools/orvane/dump/TarnelWire.h"
#include "tools/orvane/dump/WireReader.h"
#include "tools/orvane/dump/WireText.h"
#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

#include <optional>

namespace orvane::tool::dump {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kTrailerSize = 12;
constexpr std::uint32_t kWordLength = 4;

std::optional<Json> readElements(WireReader& reader, const TarnelOutput& output) {
    const auto length = static_cast<std::uint32_t>(output.count) * kWordLength;
    const std::size_t count = output.count > 0 ? static_cast<std::size_t>(output.count) : 0;
    if (reader.Unsigned() != length || reader.Left() / kWordLength < count) {
        return std::nullopt;
    }
    Json elements = Json::array();
    for (std::size_t i = 0; i < count; ++i) {
        elements.push_back(output.type == kTypeIntArray ? Json(reader.Signed())
                                                        : toJson(reader.Real()));
    }
    return elements;
}

std::optional<Json> readCommandState(WireReader& reader) {
    constexpr std::uint32_t kStateLength = 1;
    if (reader.Unsigned() != kStateLength) {
        return std::nullopt;
    }
    return reader.Byte();
}

std::optional<Json> readValue(WireReader& reader, const TarnelOutput& output) {
    if (output.IsArray()) {
        return readElements(reader, output);
    }
    if (output.IsWatchedCommand()) {
        return readCommandState(reader);
    }
    if (output.type != kTypeInt && output.type != kTypeFloat) {
        return Json(); // an identifier and no value
    }
    if (reader.Unsigned() != kWordLength) {
        return std::nullopt;
    }
    return output.type == kTypeInt ? Json(reader.Signed()) : toJson(reader.Real());
}

std::optional<Json> readEntry(WireReader& reader, const TarnelOutput& output, bool hasIdsTwice) {
    bool isExpected = reader.Unsigned() == output.id;
    if (hasIdsTwice && output.IsWatchedCommand()) {
        isExpected = reader.Unsigned() == output.id && isExpected;
    }
    const std::optional<Json> value = isExpected ? readValue(reader, output) : std::nullopt;
    if (!value || reader.IsShort()) {
        return std::nullopt;
    }
    return Json{{"output", output.id}, {"name", output.name}, {"value", *value}};
}

std::optional<std::uint32_t> readAircraft(WireReader& reader) {
    const bool isTrailer =
        reader.Unsigned() == kAircraftEntryId && reader.Unsigned() == kWordLength;
    const std::uint32_t aircraft = reader.Unsigned();
    return isTrailer && !reader.IsShort() && reader.Left() == 0 ? std::optional(aircraft)
                                                                : std::nullopt;
}

// While no aircraft is loaded, commands have their identifier twice.
std::optional<Json> readStream(ByteView payload, const TarnelDefinitions& declared,
                               bool hasIdsTwice) {
    WireReader reader(payload);
    Json entries = Json::array();
    for (const TarnelOutput& output : declared.outputs) {
        std::optional<Json> entry = readEntry(reader, output, hasIdsTwice);
        if (!entry) {
            return std::nullopt;
        }
        entries.push_back(std::move(*entry));
    }
    const std::optional<std::uint32_t> aircraft = readAircraft(reader);
    if (!aircraft) {
        return std::nullopt;
    }
    return Json{{"outputs", std::move(entries)}, {"aircraft", *aircraft}};
}

std::optional<Json> readStream(ByteView payload, const TarnelDefinitions& declared) {
    std::optional<Json> stream = readStream(payload, declared, false);
    return stream ? stream : readStream(payload, declared, true);
}

std::string streamText(const Json& stream) {
    std::string text;
    for (const Json& entry : stream["outputs"]) {
        const std::string name = printable(entry["name"].get<std::string>());
        text += name.empty() ? fmt::format("{}", entry["output"].get<std::uint32_t>()) : name;
        text += entry["value"].is_null() ? " has no value, "
                                         : fmt::format(" = {}, ", valueText(entry["value"]));
    }
    const auto aircraft = stream["aircraft"].get<std::uint32_t>();
    return text + (aircraft == 0 ? "no aircraft" : "aircraft " + hexNumber(aircraft));
}

void readVersion(ByteView payload, Message& message) {
    WireReader reader(payload);
    const std::uint32_t specifier = reader.Unsigned();
    Json version = Json::array();
    for (int i = 0; i < 4; ++i) {
        version.push_back(reader.Byte());
    }
    const std::uint32_t number = reader.Unsigned();
    message.kind = "version";
    message.text = fmt::format("{}.{}.{}.{}, {}", version[0].get<int>(), version[1].get<int>(),
                               version[2].get<int>(), version[3].get<int>(), number);
    message.values = {{"version", version}, {"number", number}};
    if (specifier != kTarnelVersion || reader.IsShort() || reader.Left() > 0) {
        message.text = hexText(payload);
        message.values = Json::object();
        message.marks.push_back({MarkKind::Odd, "no answer to a version request"});
    }
}

// Definitions that the capture does not show are no fault of the stream.
void describeUnread(ByteView payload, const TarnelDefinitions& declared, Message& message) {
    message.text = hexText(payload);
    message.values["size"] = payload.size();
    if (!declared.areKnown) {
        message.marks.push_back({MarkKind::Missing, "the definitions are not in the capture"});
        return;
    }
    message.marks.push_back({MarkKind::Odd, fmt::format("does not fit the {} declared outputs",
                                                        declared.outputs.size())});
}

} // namespace

bool isOutputStream(ByteView payload, const TarnelDefinitions& declared) {
    return readStream(payload, declared).has_value();
}

Message readTarnelAnswer(ByteView payload, TarnelRequest::Answer expected,
                         const TarnelDefinitions& declared) {
    Message message;
    message.direction = Direction::FromPlugin;
    message.protocol = "tarnel";
    if (expected == TarnelRequest::Answer::Version) {
        readVersion(payload, message);
        return message;
    }
    message.kind = "outputs";
    if (expected == TarnelRequest::Answer::OutputsTwice) {
        message.marks.push_back({MarkKind::Odd, "the outputs come twice"});
        payload = payload.subspan(payload.size() / 2);
    }
    const bool mayBeRead = declared.areKnown || payload.size() == kTrailerSize;
    const std::optional<Json> stream = mayBeRead ? readStream(payload, declared) : std::nullopt;
    if (!stream) {
        describeUnread(payload, declared, message);
        return message;
    }
    message.text = streamText(*stream);
    message.values = *stream;
    return message;
}

} // namespace orvane::tool::dump
