#include "tools/orvane/dump/VelmarReplies.h"

#include "tools/orvane/dump/WireText.h"

#include <fmt/format.h>

#include <utility>

namespace orvane::tool::dump {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint8_t kStateUp = 0;
constexpr std::uint8_t kStateDown = 1;
constexpr std::uint8_t kStatePressedBetween = 2;

std::string stateText(std::uint8_t state) {
    switch (state) {
    case kStateUp:
        return "up";
    case kStateDown:
        return "down";
    case kStatePressedBetween:
        return "pressed and released";
    default:
        return fmt::format("state {}", state);
    }
}

std::string aboutText(std::uint32_t about) {
    switch (about) {
    case kAboutDataref:
        return "no such dataref";
    case kAboutCommand:
        return "no such command";
    default:
        return fmt::format("failure {}", about);
    }
}

} // namespace

const char* packetWord(VelmarPacket type) {
    switch (type) {
    case VelmarPacket::RegisterDataref:
        return "register dataref";
    case VelmarPacket::UnregisterDataref:
        return "unregister dataref";
    case VelmarPacket::RegisterCommand:
        return "register command";
    case VelmarPacket::UnregisterCommand:
        return "unregister command";
    case VelmarPacket::ReadDataref:
        return "read dataref";
    case VelmarPacket::WriteDataref:
        return "write dataref";
    case VelmarPacket::RunCommand:
        return "run command";
    case VelmarPacket::PollCommandStates:
        return "poll command states";
    }
    return "";
}

Json readVelmarValue(ByteView bytes, const VelmarDataref& dataref) {
    WireReader reader(bytes);
    switch (dataref.type) {
    case VelmarType::Int:
        return reader.Signed();
    case VelmarType::Float:
        return toJson(reader.Real());
    case VelmarType::Byte:
        return reader.Byte();
    case VelmarType::None:
        return hexText(bytes);
    default:
        break;
    }
    Json elements = Json::array();
    while (reader.Left() > 0) {
        elements.push_back(dataref.type == VelmarType::IntArray ? Json(reader.Signed())
                                                                : toJson(reader.Real()));
    }
    return elements;
}

VelmarReplies::VelmarReplies(std::optional<ByteView> payloadOfAnswer)
    : payload(payloadOfAnswer), reader(payload.value_or(ByteView())) {}

Message& VelmarReplies::add(VelmarPacket type) {
    Message& message = messages.emplace_back();
    message.direction = Direction::FromPlugin;
    message.protocol = "velmar";
    message.kind = packetWord(type);
    return message;
}

bool VelmarReplies::IsNext(VelmarPacket type, std::uint32_t id) const {
    WireReader ahead = reader;
    return ahead.Unsigned() == static_cast<std::uint32_t>(type) && ahead.Unsigned() == id &&
           !ahead.IsShort();
}

// What follows cannot be read, since nothing says where the next reply begins.
void VelmarReplies::giveUp(Message& message, const std::string& what) {
    message.marks.push_back({MarkKind::Odd, what + ": " + hexText(reader.Rest())});
    reader.Take(reader.Left());
}

bool VelmarReplies::readHead(VelmarPacket type, std::uint32_t id, Message& message) {
    message.values["id"] = id;
    if (!IsNext(type, id)) {
        giveUp(message, "another reply was expected");
        return false;
    }
    reader.Unsigned();
    reader.Unsigned();
    return true;
}

bool VelmarReplies::readOutcome(Message& message, const std::string& target) {
    const std::uint32_t status = reader.Unsigned();
    const bool isSuccess = status == kVelmarSuccess;
    message.values["success"] = isSuccess;
    if (status == kVelmarFailure) {
        message.text = fmt::format("{}: {}", target, aboutText(reader.Unsigned()));
    } else {
        message.text = isSuccess ? fmt::format("{}: success", target)
                                 : fmt::format("{}: status {}", target, status);
    }
    if (reader.IsShort() || (!isSuccess && status != kVelmarFailure)) {
        giveUp(message, "no status");
        return false;
    }
    return isSuccess;
}

bool VelmarReplies::ReadStatus(VelmarPacket type, std::uint32_t id, const std::string& target) {
    if (!AreThere()) {
        return true;
    }
    Message& message = add(type);
    return readHead(type, id, message) && readOutcome(message, target);
}

void VelmarReplies::ReadValue(std::uint32_t id, const VelmarDataref* dataref,
                              const std::string& target) {
    if (!AreThere()) {
        return;
    }
    Message& message = add(VelmarPacket::ReadDataref);
    if (!readHead(VelmarPacket::ReadDataref, id, message) || !readOutcome(message, target)) {
        return;
    }
    const VelmarDataref unknown;
    const VelmarDataref& known = dataref != nullptr ? *dataref : unknown;
    if (dataref != nullptr && known.type == VelmarType::None) {
        return;
    }
    const std::uint32_t length = reader.Unsigned();
    const bool isExpected =
        dataref == nullptr || length == static_cast<std::uint32_t>(known.ValueSize());
    if (reader.IsShort() || reader.Left() < length || !isExpected) {
        giveUp(message, fmt::format("a value of {} bytes", length));
        return;
    }
    Json value = readVelmarValue(reader.Take(length), known);
    message.text = fmt::format("{} = {}", target, valueText(value));
    message.values["value"] = std::move(value);
}

void VelmarReplies::ReadStates(const VelmarNames& names) {
    if (!AreThere()) {
        return;
    }
    constexpr std::size_t kEntrySize = 5;
    Message& message = add(VelmarPacket::PollCommandStates);
    const std::uint32_t count = reader.Unsigned();
    Json& states = message.values["states"] = Json::array();
    if (reader.IsShort() || reader.Left() / kEntrySize < count) {
        giveUp(message, fmt::format("{} states", count));
        return;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t id = reader.Unsigned();
        const std::uint8_t state = reader.Byte();
        message.text +=
            fmt::format("{}{}: {}", i == 0 ? "" : ", ", names.CommandText(id), stateText(state));
        states.push_back({{"id", id}, {"state", state}});
    }
    if (count == 0) {
        message.text = "none has changed";
    }
}

std::vector<Message> VelmarReplies::Finish() {
    if (AreThere() && (messages.empty() || reader.Left() > 0)) {
        Message& message = messages.emplace_back();
        message.direction = Direction::FromPlugin;
        message.protocol = "velmar";
        message.kind = "answer";
        message.text = payload->empty() ? "empty" : fmt::format("{} bytes", reader.Left());
        if (reader.Left() > 0) {
            giveUp(message, "more than the packets ask for");
        }
    }
    return std::move(messages);
}

} // namespace orvane::tool::dump
