#include "tools/orvane/dump/VelmarRequest.h"

#include "tools/orvane/dump/TarnelWire.h"
#include "tools/orvane/dump/VelmarReplies.h"
#include "tools/orvane/dump/WireReader.h"
#include "tools/orvane/dump/WireText.h"
#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orvane::tool::dump {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kWord = 4;
constexpr std::size_t kIdEnd = 8; // type and identifier
constexpr std::size_t kValueBegin = 12;
// The plugin asks for as many behind the type of either registration.
constexpr std::size_t kSmallestDescriptor = 13;
constexpr std::size_t kDatarefNameBegin = 17;
constexpr std::size_t kCommandNameBegin = 9;

constexpr std::uint8_t kRunOnce = 1;
constexpr std::uint8_t kRunBegin = 2;

const char* runText(std::uint8_t action) {
    if (action == kRunOnce) {
        return "once";
    }
    return action == kRunBegin ? "begin" : "end";
}

VelmarType typeOf(std::uint32_t number) {
    return number <= static_cast<std::uint32_t>(VelmarType::FloatArray)
               ? static_cast<VelmarType>(number)
               : VelmarType::None;
}

// Takes packet after packet until one is not there as a whole, or was not answered.
class ExchangeReader final {
public:
    ExchangeReader(ByteView request, const std::set<std::size_t>& sendsOfClient,
                   std::optional<ByteView> answer, VelmarNames& namesSoFar)
        : bytes(request), sends(sendsOfClient), replies(answer), names(namesSoFar) {}

    VelmarExchange Read() {
        while (begin < bytes.size() && readPacket()) {
            begin += packet.Position();
        }
        exchange.consumed = begin;
        exchange.replies = replies.Finish();
        return std::move(exchange);
    }

private:
    // False for a packet that is left unread.
    bool readPacket() {
        packet = WireReader(bytes.subspan(begin));
        size = packet.Left();
        if (size < kWord) {
            add("packet", hexText(packet.Rest()));
            return wait("of its type");
        }
        const auto type = static_cast<VelmarPacket>(packet.Unsigned());
        switch (type) {
        case VelmarPacket::RegisterDataref:
            return registerDataref();
        case VelmarPacket::UnregisterDataref:
            return unregister(type, names.datarefs);
        case VelmarPacket::RegisterCommand:
            return registerCommand();
        case VelmarPacket::UnregisterCommand:
            return unregister(type, names.commands);
        case VelmarPacket::ReadDataref:
            return readDataref();
        case VelmarPacket::WriteDataref:
            return writeDataref();
        case VelmarPacket::RunCommand:
            return runCommand();
        case VelmarPacket::PollCommandStates:
            return poll();
        }
        return skipUnknown(static_cast<std::uint32_t>(type));
    }

    Message& add(const char* kind, std::string text) {
        Message& message = exchange.packets.emplace_back();
        message.protocol = "velmar";
        message.kind = kind;
        message.text = std::move(text);
        return message;
    }

    Message& add(VelmarPacket type, std::uint32_t id, std::string text) {
        Message& message = add(packetWord(type), std::move(text));
        message.values["id"] = id;
        return message;
    }

    void mark(MarkKind kind, std::string text) {
        exchange.packets.back().marks.push_back({kind, std::move(text)});
    }

    // The packet was added before.
    bool wait(const std::string& what) {
        mark(MarkKind::Torn, fmt::format("{} bytes {}: left unread", size, what));
        return false;
    }

    bool waitAs(VelmarPacket type) {
        add(packetWord(type), hexText(packet.Rest()));
        return wait("have arrived");
    }

    // A simulator that has answered did not end. The packet was then not among what it had.
    bool endSimulator(VelmarPacket type, std::string line) {
        if (replies.AreThere()) {
            return false;
        }
        add(packetWord(type), hexText(bytes.subspan(begin + kWord)));
        mark(MarkKind::EndsSimulator, std::move(line));
        exchange.endsSimulator = true;
        return false;
    }

    bool endByShortage(VelmarPacket type, const char* operation, std::size_t wanted = kWord) {
        return endSimulator(type, fmt::format("Error@RingBuffer::{} : GetNumReadBytesAvailable() "
                                              "< {}",
                                              operation, wanted));
    }

    bool endByShortName(VelmarPacket type, const char* className, std::size_t nameBegin) {
        // The length stands in the log as the byte that it is.
        const std::size_t got = size - nameBegin;
        std::string line =
            fmt::format("FATAL@{}::FromStream : tried to read string with ", className);
        line += static_cast<char>(bytes[begin + nameBegin - 1]);
        return endSimulator(type, line + fmt::format(" bytes, got {}", got));
    }

    std::size_t nameLength(std::size_t nameBegin) const { return bytes[begin + nameBegin - 1]; }

    // A packet with a reply that does not come was not among what the plugin had.
    bool isUnanswered() const { return replies.AreExhausted(); }

    bool registerDataref() {
        constexpr auto kType = VelmarPacket::RegisterDataref;
        if (size < kWord + kSmallestDescriptor) {
            return waitAs(kType);
        }
        if (size < kDatarefNameBegin + nameLength(kDatarefNameBegin)) {
            return endByShortName(kType, "XPlaneDataRef", kDatarefNameBegin);
        }
        if (isUnanswered()) {
            return false;
        }
        const std::uint32_t id = packet.Unsigned();
        const std::uint32_t typeNumber = packet.Unsigned();
        VelmarDataref dataref{{}, typeOf(typeNumber), packet.Unsigned()};
        dataref.name = packet.Text(packet.Byte());
        Message& message = add(
            kType, id, fmt::format("{} {} {}", id, printable(dataref.name), dataref.TypeText()));
        message.values["name"] = dataref.name;
        message.values["type"] = typeNumber;
        message.values["array_size"] = dataref.arraySize;
        const std::string target = fmt::format("{} {}", id, printable(dataref.name));
        if (replies.ReadStatus(kType, id, target)) {
            names.datarefs[id] = std::move(dataref);
        }
        return true;
    }

    bool registerCommand() {
        constexpr auto kType = VelmarPacket::RegisterCommand;
        if (size < kWord + kSmallestDescriptor) {
            return endSimulator(kType,
                                "FATAL@VelmarDataRef::FromStream : Not enough bytes to read "
                                "dataref");
        }
        if (size < kCommandNameBegin + nameLength(kCommandNameBegin)) {
            return endByShortName(kType, "VelmarDataRef", kCommandNameBegin);
        }
        if (isUnanswered()) {
            return false;
        }
        const std::uint32_t id = packet.Unsigned();
        const std::string name = packet.Text(packet.Byte());
        const std::string target = fmt::format("{} {}", id, printable(name));
        add(kType, id, target).values["name"] = name;
        if (replies.ReadStatus(kType, id, target)) {
            names.commands[id] = name;
        }
        return true;
    }

    std::string textOf(const std::map<std::uint32_t, VelmarDataref>& /*datarefs*/,
                       std::uint32_t id) const {
        return names.DatarefText(id);
    }
    std::string textOf(const std::map<std::uint32_t, std::string>& /*commands*/,
                       std::uint32_t id) const {
        return names.CommandText(id);
    }

    template <class Map>
    bool unregister(VelmarPacket type, Map& registered) {
        if (size < kIdEnd) {
            return waitAs(type);
        }
        if (isUnanswered()) {
            return false;
        }
        const std::uint32_t id = packet.Unsigned();
        const std::string target = textOf(registered, id);
        add(type, id, target);
        replies.ReadStatus(type, id, target);
        registered.erase(id);
        return true;
    }

    const VelmarDataref* findDataref(std::uint32_t id) const {
        const auto found = names.datarefs.find(id);
        return found == names.datarefs.end() ? nullptr : &found->second;
    }

    bool readDataref() {
        constexpr auto kType = VelmarPacket::ReadDataref;
        if (size < kIdEnd) {
            return endByShortage(kType, "ReadUInt32");
        }
        if (isUnanswered()) {
            return false;
        }
        const std::uint32_t id = packet.Unsigned();
        const VelmarDataref* const dataref = findDataref(id);
        add(kType, id, names.DatarefText(id));
        if (dataref == nullptr && names.areComplete) {
            mark(MarkKind::Unknown, "not registered");
        }
        replies.ReadValue(id, dataref, names.DatarefText(id));
        return true;
    }

    bool writeDataref() {
        constexpr auto kType = VelmarPacket::WriteDataref;
        if (size < kIdEnd) {
            return endByShortage(kType, "ReadUInt32");
        }
        const std::uint32_t id = packet.Unsigned();
        const VelmarDataref* const dataref = findDataref(id);
        // Of a number from before the capture the reply tells whether it is known.
        const bool isKnown =
            dataref != nullptr || (!names.areComplete && size >= kValueBegin &&
                                   (!replies.AreThere() || replies.IsNext(kType, id)));
        if (!isKnown) {
            add(kType, id, std::to_string(id));
            mark(MarkKind::Unknown, "not registered: the value is taken for the next packets");
            return true;
        }
        if (size < kValueBegin) {
            return endByShortage(kType, "ReadUInt32");
        }
        return dataref != nullptr ? writeKnown(id, *dataref) : writeValue(id, nullptr);
    }

    // With a length that is not the type's the packet waits for ever.
    bool writeKnown(std::uint32_t id, const VelmarDataref& dataref) {
        constexpr auto kType = VelmarPacket::WriteDataref;
        const std::uint32_t length = WireReader(bytes.subspan(begin + kIdEnd)).Unsigned();
        if (dataref.type == VelmarType::None || length != dataref.ValueSize()) {
            add(kType, id, fmt::format("{}, {} bytes", names.DatarefText(id), length));
            mark(MarkKind::Odd,
                 fmt::format("no value of type {}: left unread, with all that follows",
                             dataref.TypeText()));
            return false;
        }
        const std::size_t there = size - kValueBegin;
        if (there >= length) {
            return writeValue(id, &dataref);
        }
        switch (dataref.type) {
        case VelmarType::Int:
            return endByShortage(kType, "ReadInt32");
        case VelmarType::Float:
            return endByShortage(kType, "ReadFloat");
        case VelmarType::Byte:
            return endByShortage(kType, "ReadUInt8", 1);
        default:
            return waitAs(kType);
        }
    }

    bool writeValue(std::uint32_t id, const VelmarDataref* dataref) {
        constexpr auto kType = VelmarPacket::WriteDataref;
        if (isUnanswered()) {
            return false;
        }
        const std::uint32_t length = packet.Unsigned();
        if (packet.Left() < length) {
            return waitAs(kType);
        }
        const std::string target = names.DatarefText(id);
        const Json value =
            readVelmarValue(packet.Take(length), dataref != nullptr ? *dataref : VelmarDataref());
        add(kType, id, fmt::format("{} = {}", target, valueText(value))).values["value"] = value;
        replies.ReadStatus(kType, id, target);
        return true;
    }

    bool runCommand() {
        constexpr auto kType = VelmarPacket::RunCommand;
        if (size == kWord) {
            return waitAs(kType);
        }
        if (size < kIdEnd) {
            return endByShortage(kType, "ReadUInt32");
        }
        if (size == kIdEnd) {
            return endByShortage(kType, "ReadUInt8", 1);
        }
        const std::uint32_t id = packet.Unsigned();
        const std::uint8_t action = packet.Byte();
        add(kType, id, fmt::format("{}: {}", names.CommandText(id), runText(action)))
            .values["action"] = action;
        if (names.areComplete && !names.commands.contains(id)) {
            mark(MarkKind::Unknown, "not registered: skipped");
        }
        return true;
    }

    bool poll() {
        if (isUnanswered()) {
            return false;
        }
        add(packetWord(VelmarPacket::PollCommandStates), {});
        replies.ReadStates(names);
        return true;
    }

    bool skipUnknown(std::uint32_t type) {
        const bool isIdentification =
            type == kVelmarIdentification || type == kTarnelIdentification;
        if (isIdentification && sends.contains(begin) && isUnanswered()) {
            return false;
        }
        add("unknown", hexNumber(type)).values["type"] = type;
        mark(MarkKind::Unknown, isIdentification ? "a second identification: skipped"
                                                 : "no such packet: its 4 bytes are skipped");
        return true;
    }

    ByteView bytes;
    const std::set<std::size_t>& sends;
    VelmarReplies replies;
    VelmarNames& names;
    std::size_t begin = 0; // of the packet
    WireReader packet{ByteView()};
    std::size_t size = 0; // of the packet and all behind it
    VelmarExchange exchange;
};

} // namespace

VelmarExchange readVelmarExchange(ByteView bytes, const std::set<std::size_t>& sends,
                                  std::optional<ByteView> answer, VelmarNames& names) {
    return ExchangeReader(bytes, sends, answer, names).Read();
}

} // namespace orvane::tool::dump
