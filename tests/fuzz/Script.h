#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/Bytes.h"

// One event: a client sends, the simulator flies on, a pilot presses a command.
struct Step {
    enum class Kind : unsigned char {
        Send,     // `bytes`, by client `argument`
        Tick,     // a flight loop; protocols on their own are fed without new bytes
        Press,    // command `argument / 4`: begin, end, once or one more frame
        Aircraft, // odd: loaded, and its id read; even: unloaded
        Clock,    // `argument` times 10 ms pass
        Receive,  // client `argument` reads what has come
        Leave,    // client `argument % 4` closes, resets or half-closes
        Fault,    // a socket call to come fails as `argument` says
        Count
    };

    Kind kind = Kind::Tick;
    std::uint8_t argument = 0;
    Bytes bytes{};
};

// What a fuzz target plays. On file each step is a byte for its kind, taken modulo the number of
// kinds, and a byte for its argument; a Send goes on with a length of 16 bits and its bytes. Every
// file is a script: a torn last step counts as far as it goes.
using Script = std::vector<Step>;

Script parseScript(const std::uint8_t* data, std::size_t size);
Bytes toBytes(const Script& script);
