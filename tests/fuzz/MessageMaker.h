#pragma once

#include <cstddef>
#include <random>
#include <string>

#include "support/Bytes.h"
#include "support/TarnelMessages.h"

// Makes up messages as a client would send them: whole, of consistent sizes, with the names of
// FuzzWorld. Some carry a count, an element or a number at the edge of what there is. The same seed
// makes the same messages.
class MessageMaker final {
public:
    explicit MessageMaker(unsigned int seed) : random(seed) {}

    // Without the identification of the protocol.
    Bytes Tarnel();
    Bytes Velmar();
    // With it, of either.
    Bytes Request();

    // 0 to `count` - 1.
    std::size_t Below(std::size_t count) { return random() % count; }

private:
    Bytes definitions();
    Bytes data();
    Bytes velmarPacket();
    Bytes velmarValue();
    InputRecord input();
    OutputRecord output();

    bool oneIn(std::size_t count) { return Below(count) == 0; }
    std::int32_t type() { return static_cast<std::int32_t>(Below(8)); }
    std::int32_t action();
    std::int32_t number();
    std::int32_t elements();
    float real();
    std::string name();

    std::minstd_rand random;
};
