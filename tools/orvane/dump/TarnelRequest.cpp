#include "tools/orvane/dump/TarnelRequest.h"

#include "tools/orvane/dump/TarnelWire.h"
#include "tools/orvane/dump/WireReader.h"
#include "tools/orvane/dump/WireText.h"
#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orvane::tool::dump {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kStaysUnread = "answered with the outputs, and left unread";
constexpr const char* kShortage = "Error@RingBuffer::{} : GetNumReadBytesAvailable() < 4";

// Up to the zero byte; the plugin makes the last byte one.
std::string readName(WireReader& reader) {
    const std::string field = reader.Text(kNameSize);
    return field.substr(0, std::min(field.find('\0'), kNameSize - 1));
}

// Of an input record's target, and of the datarefs in it.
std::string targetTypeText(std::int32_t type, std::int32_t index) {
    switch (type) {
    case kTypeInt:
        return "int";
    case kTypeFloat:
        return "float";
    case kTypeIntArray:
        return fmt::format("int element {}", index);
    case kTypeFloatArray:
        return fmt::format("float element {}", index);
    case kTypeCommand:
        return "command";
    default:
        return fmt::format("type {}", type);
    }
}

// All fields in the order of the wire. The reserved ones are of no account and left out.
Json readInputRecord(WireReader& reader) {
    Json record;
    record["action"] = reader.Signed();
    reader.Take(8);
    record["target_index"] = reader.Signed();
    record["fixed_int"] = reader.Signed();
    record["repeat_interval_ms"] = reader.Signed();
    record["int_minimum"] = reader.Signed();
    record["int_maximum"] = reader.Signed();
    record["target_type"] = reader.Signed();
    record["scaling"] = reader.Signed();
    record["range_type"] = reader.Signed();
    record["range_index"] = reader.Signed();
    record["condition"] = reader.Signed();
    record["fixed_float"] = toJson(reader.Real());
    record["float_minimum"] = toJson(reader.Real());
    record["float_maximum"] = toJson(reader.Real());
    record["use_fixed"] = reader.Signed();
    record["hold"] = reader.Signed();
    reader.Take(4);
    record["held"] = reader.Signed();
    record["range_minimum_name"] = readName(reader);
    record["range_maximum_name"] = readName(reader);
    record["target"] = readName(reader);
    record["condition_name"] = readName(reader);
    record["condition_type"] = reader.Signed();
    record["condition_index"] = reader.Signed();
    return record;
}

std::string inputText(const Json& record) {
    return fmt::format(
        "; input {} {} {}", record["action"].get<int>(),
        printable(record["target"].get<std::string>()),
        targetTypeText(record["target_type"].get<int>(), record["target_index"].get<int>()));
}

TarnelOutput readOutputRecord(WireReader& reader) {
    TarnelOutput output;
    output.id = reader.Unsigned();
    output.name = readName(reader);
    output.type = reader.Signed();
    output.first = reader.Signed();
    output.count = reader.Signed();
    return output;
}

Json toJson(const TarnelOutput& output) {
    return {{"output", output.id},
            {"name", output.name},
            {"type", output.type},
            {"first", output.first},
            {"count", output.count}};
}

class RequestReader final {
public:
    RequestReader(ByteView bytes, const TarnelDefinitions& declared)
        : reader(bytes), declared(declared), available(bytes.size()) {
        request.message.protocol = "tarnel";
    }

    TarnelRequest Read() {
        if (available == 0) {
            request.message.kind = "query";
            request.message.text = "for the outputs";
            return std::move(request);
        }
        if (available < sizeof(std::uint32_t)) {
            request.message.kind = "fragment";
            request.message.text = hexText(reader.Rest());
            markTorn(sizeof(std::uint32_t));
            return std::move(request);
        }
        readMessage(reader.Unsigned());
        return std::move(request);
    }

private:
    void readMessage(std::uint32_t specifier) {
        Message& message = request.message;
        switch (specifier) {
        case kTarnelVersion:
            message.kind = "version";
            request.answer = TarnelRequest::Answer::Version;
            request.consumed = reader.Position();
            break;
        case kTarnelDefinitions:
            message.kind = "definitions";
            readDefinitions();
            break;
        case kTarnelData:
            message.kind = "data";
            readData();
            break;
        default:
            message.kind = "unknown";
            message.text = fmt::format("{} and {} bytes", hexNumber(specifier), reader.Left());
            message.values["specifier"] = specifier;
            mark(MarkKind::Unknown, fmt::format("no such message: {}", kStaysUnread));
            break;
        }
    }

    void mark(MarkKind kind, std::string text) {
        request.message.marks.push_back({kind, std::move(text)});
    }

    void markTorn(std::uint32_t expected) {
        mark(MarkKind::Torn, fmt::format("{} of {} bytes: {}", available, expected, kStaysUnread));
    }

    void endSimulator(const char* operation) {
        request.endsSimulator = true;
        mark(MarkKind::EndsSimulator, fmt::format(fmt::runtime(kShortage), operation));
    }

    void expectSize(const char* what, std::uint32_t size, std::uint32_t count,
                    std::size_t expected) {
        if (count > 0 && size != expected) {
            mark(MarkKind::Odd, fmt::format("{} announced with {} bytes each, read with {}", what,
                                            size, expected));
        }
    }

    // The size is computed in 32 bits. A message that seems to have none is handled, and yet left
    // where it is.
    bool isWhole(std::uint32_t size) {
        if (available < size) {
            markTorn(size);
            return false;
        }
        return true;
    }

    void finish(std::uint32_t size) {
        if (size != 0) {
            request.consumed = reader.Position();
            return;
        }
        mark(MarkKind::Odd, "its size adds up to 0: handled, and left unread");
        if (request.definitions) {
            request.answer = TarnelRequest::Answer::OutputsTwice;
        }
    }

    void readDefinitions() {
        if (available < kDefinitionsHeaderSize) {
            markTorn(kDefinitionsHeaderSize);
            return;
        }
        const std::uint32_t inputSize = reader.Unsigned();
        const std::uint32_t inputCount = reader.Unsigned();
        const std::uint32_t outputSize = reader.Unsigned();
        const std::uint32_t outputCount = reader.Unsigned();
        request.message.text = fmt::format("{} inputs, {} outputs", inputCount, outputCount);
        request.message.values["input_count"] = inputCount;
        request.message.values["output_count"] = outputCount;
        const std::uint32_t size = inputSize * inputCount + outputSize * outputCount +
                                   std::uint32_t{kDefinitionsHeaderSize};
        expectSize("input records", inputSize, inputCount, kInputRecordSize);
        expectSize("output records", outputSize, outputCount, kOutputRecordSize);
        if (!isWhole(size)) {
            return;
        }
        TarnelDefinitions definitions;
        if (readInputs(inputCount, definitions) && readOutputs(outputCount, definitions)) {
            request.definitions = std::move(definitions);
            finish(size);
        }
    }

    bool readInputs(std::uint32_t count, TarnelDefinitions& definitions) {
        Json& records = request.message.values["inputs"] = Json::array();
        for (std::uint32_t i = 0; i < count; ++i) {
            if (reader.Left() < kInputRecordSize) {
                // Names are read as far as they are there, so that a number behind them fails.
                constexpr std::size_t kFirstFloat = 52;
                constexpr std::size_t kBehindFloats = 64;
                const bool inFloats = reader.Left() >= kFirstFloat && reader.Left() < kBehindFloats;
                endSimulator(inFloats ? "ReadFloat" : "ReadInt32");
                return false;
            }
            const Json record = readInputRecord(reader);
            definitions.targets[record["action"].get<int>()].push_back(
                record["target"].get<std::string>());
            request.message.text += inputText(record);
            records.push_back(record);
        }
        return true;
    }

    bool readOutputs(std::uint32_t count, TarnelDefinitions& definitions) {
        Json& records = request.message.values["outputs"] = Json::array();
        for (std::uint32_t i = 0; i < count; ++i) {
            if (reader.Left() < kOutputRecordSize) {
                endSimulator("ReadInt32");
                return false;
            }
            const TarnelOutput output = readOutputRecord(reader);
            request.message.text += fmt::format("; output {} {} {}", output.id,
                                                printable(output.name), output.TypeText());
            records.push_back(toJson(output));
            examine(output);
            definitions.outputs.push_back(output);
        }
        return true;
    }

    void examine(const TarnelOutput& output) {
        const bool isOwn = output.name.starts_with("kyr/");
        if (output.type == kTypeCommand && !isOwn) {
            mark(MarkKind::Odd,
                 fmt::format("output {}: only commands under kyr/ are observed", output.id));
        }
        if (output.IsArray() && output.count < 0 && isOwn) {
            mark(MarkKind::Odd, fmt::format("output {}: {} elements close the connection, unless "
                                            "the dataref exists already",
                                            output.id, output.count));
        }
    }

    void readData() {
        if (available < kDataHeaderSize) {
            markTorn(kDataHeaderSize);
            return;
        }
        const std::uint32_t itemSize = reader.Unsigned();
        const std::uint32_t count = reader.Unsigned();
        request.message.text = fmt::format("{} items", count);
        request.message.values["item_count"] = count;
        expectSize("items", itemSize, count, kDataItemSize);
        const std::uint32_t size = itemSize * count + std::uint32_t{kDataHeaderSize};
        if (isWhole(size) && readItems(count)) {
            finish(size);
        }
    }

    bool readItems(std::uint32_t count) {
        Json& items = request.message.values["items"] = Json::array();
        for (std::uint32_t i = 0; i < count; ++i) {
            if (reader.Left() < sizeof(std::uint32_t)) {
                endSimulator("ReadUInt32");
                return false;
            }
            const std::int32_t action = reader.Signed();
            const bool isShort = reader.Left() < sizeof(std::uint32_t);
            const std::int32_t value = reader.Signed();
            items.push_back(describeItem(action, value));
            if (declared.areKnown && !declared.targets.contains(action)) {
                mark(MarkKind::Unknown,
                     fmt::format("action {} is not declared: the items from there on are not "
                                 "executed, and the message is left unread",
                                 action));
                return false;
            }
            if (isShort) {
                mark(MarkKind::Odd, "the last value is cut");
            }
        }
        return true;
    }

    Json describeItem(std::int32_t action, std::int32_t value) {
        Json item = {{"action", action}, {"value", value}};
        std::string targets;
        const auto found = declared.targets.find(action);
        if (found != declared.targets.end()) {
            item["targets"] = found->second;
            targets =
                fmt::format(" {}", printable(fmt::format("{}", fmt::join(found->second, "+"))));
        }
        request.message.text += fmt::format("; {}{} = {}", action, targets, value);
        return item;
    }

    WireReader reader;
    const TarnelDefinitions& declared;
    std::size_t available;
    TarnelRequest request;
};

} // namespace

TarnelRequest readTarnelRequest(ByteView bytes, const TarnelDefinitions& declared) {
    return RequestReader(bytes, declared).Read();
}

} // namespace orvane::tool::dump
