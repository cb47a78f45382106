#pragma once

#include "tools/orvane/dump/Message.h"
#include "tools/orvane/dump/VelmarNames.h"
#include "tools/orvane/dump/WireReader.h"

#include <optional>
#include <vector>

namespace orvane::tool::dump {

// The payload of an answer, read reply by reply. Replies do not describe themselves: whoever reads
// knows which packet is next.
//
// Without an answer, as in a capture that ends before it, every packet counts as successful.
class VelmarReplies final {
public:
    explicit VelmarReplies(std::optional<ByteView> payloadOfAnswer);

    bool AreThere() const { return payload.has_value(); }
    // All has been read, or cannot be read any further.
    bool AreExhausted() const { return AreThere() && reader.Left() == 0; }
    // The next reply begins with these two words.
    bool IsNext(VelmarPacket type, std::uint32_t id) const;

    // Reads a reply with a status; true for success. `target` is what `id` stands for.
    bool ReadStatus(VelmarPacket type, std::uint32_t id, const std::string& target);
    // Nothing for a dataref of which the capture does not show the registration.
    void ReadValue(std::uint32_t id, const VelmarDataref* dataref, const std::string& target);
    void ReadStates(const VelmarNames& names);

    // What was read; what is left, and an empty answer, are messages too.
    std::vector<Message> Finish();

private:
    Message& add(VelmarPacket type);
    bool readHead(VelmarPacket type, std::uint32_t id, Message& message);
    bool readOutcome(Message& message, const std::string& target);
    void giveUp(Message& message, const std::string& what);

    std::optional<ByteView> payload;
    WireReader reader;
    std::vector<Message> messages;
};

// "register dataref", ...; empty for a number that is no type.
const char* packetWord(VelmarPacket type);

// The bytes of a value, behind its length, by the dataref's type.
nlohmann::ordered_json readVelmarValue(ByteView bytes, const VelmarDataref& dataref);

} // namespace orvane::tool::dump
