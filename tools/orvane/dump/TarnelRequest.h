#pragma once

#include "tools/orvane/dump/Message.h"
#include "tools/orvane/dump/TarnelDefinitions.h"
#include "tools/orvane/dump/TcpSegment.h"

#include <optional>

namespace orvane::tool::dump {

// What the plugin makes of the bytes behind a Tarnel identification.
struct TarnelRequest {
    enum class Answer { Version, Outputs, OutputsTwice };

    Message message{};
    // Of the bytes; the rest stays in the plugin's buffer, in front of what comes next.
    std::size_t consumed = 0;
    Answer answer = Answer::Outputs;
    // What a DEFINITIONS message declares, in place of all that was declared before.
    std::optional<TarnelDefinitions> definitions{};
    bool endsSimulator = false;
};

// `bytes` is all that the plugin had behind the identification when it looked.
TarnelRequest readTarnelRequest(ByteView bytes, const TarnelDefinitions& declared);

} // namespace orvane::tool::dump
