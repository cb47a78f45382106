#pragma once

#include "tools/orvane/dump/Message.h"
#include "tools/orvane/dump/TcpSegment.h"
#include "tools/orvane/dump/VelmarNames.h"

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

namespace orvane::tool::dump {

// What the plugin makes of the bytes behind a Velmar identification, and what it says to them.
struct VelmarExchange {
    std::vector<Message> packets{};
    std::vector<Message> replies{};
    // Of the bytes; the rest stays in the plugin's buffer, in front of what comes next.
    std::size_t consumed = 0;
    bool endsSimulator = false;
};

// `bytes` is all that the client had sent behind the identification when the answer began, if there
// is an answer. Which of it the plugin had when it looked is a guess: the packets up to the last
// reply, and those behind it that have no reply. A second identification that begins one of the
// client's sends (`sends`: where they begin in `bytes`) and finds no more replies is taken for the
// next request.
//
// `names` is brought up to date.
VelmarExchange readVelmarExchange(ByteView bytes, const std::set<std::size_t>& sends,
                                  std::optional<ByteView> answer, VelmarNames& names);

} // namespace orvane::tool::dump
