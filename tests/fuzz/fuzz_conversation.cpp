// What goes over one connection, as a script: whatever is sent, missing or cut, the tool's decoder
// says something that can be written.

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

#include "tools/orvane/dump/Conversation.h"
#include "tools/orvane/dump/MessageText.h"

namespace {

namespace dump = orvane::tool::dump;
using Bytes = std::span<const std::uint8_t>;

void examine(const dump::Message& message) {
    dump::messageAsText(message, {});
    dump::messageAsRecord(message, {true, 0})
        .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

// A step is what happens, the number of bytes, and the bytes.
Bytes takePayload(Bytes& script) {
    const std::size_t size = script[1] | std::size_t{script[2]} << 8U;
    script = script.subspan(3);
    const Bytes payload = script.first(std::min(size, script.size()));
    script = script.subspan(payload.size());
    return payload;
}

void play(dump::Conversation& conversation, Bytes script) {
    for (std::int64_t timeNs = 0; script.size() >= 3; timeNs += 1'000'000) {
        const unsigned what = script[0] % 8;
        const Bytes payload = takePayload(script);
        const auto direction =
            what % 2 == 0 ? dump::Direction::ToPlugin : dump::Direction::FromPlugin;
        switch (what) {
        case 0:
        case 2:
            conversation.AddSent(timeNs, payload);
            break;
        case 1:
        case 3:
            conversation.AddAnswered(timeNs, payload);
            break;
        case 4:
            conversation.MissSent(timeNs, payload.size());
            break;
        case 5:
            conversation.MissAnswered(timeNs, payload.size());
            break;
        default:
            conversation.End(timeNs, direction, payload.size() % 2 == 0);
            break;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    dump::Conversation conversation({}, data[0] % 2 == 0, examine);
    conversation.Begin(0);
    play(conversation, Bytes(data, size).subspan(1));
    conversation.Finish();
    return 0;
}
