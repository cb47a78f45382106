#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/LoggingService.h"
#include "common/Utilities.h"
#include "network/RingBuffer.h"
#include "steady/AllocationCounter.h"
#include "support/Bytes.h"
#include "support/PluginWorld.h"

class IProtocol;

// A simulator with an aircraft and a given number of datarefs of each type, and two ring buffers to
// feed a protocol with. Its log has the level that users have.
class SteadyWorld final : public PluginWorld<LoggingService, Utilities> {
public:
    // Of the arrays.
    static constexpr int kElements = 3;

    // "sim/int/10000" and up; likewise "sim/float/", "sim/ints/" and "sim/floats/".
    explicit SteadyWorld(int datarefsOfEachType);

    // What a connection does around feeding a protocol. Returns the size of the answer, and
    // allocates nothing itself.
    unsigned long Exchange(IProtocol& protocol, Bytes& request);

    RingBuffer in;
    RingBuffer out;
};

// Texts of equal length for all numbers below 90,000, since a longer text may allocate.
std::string numbered(const char* prefix, int number);
