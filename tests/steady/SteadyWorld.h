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

// A simulator with an aircraft and as many datarefs of each type as a test wants, and the two ring
// buffers between which a protocol is fed. Its log is at the level that users have.
class SteadyWorld final : public PluginWorld<LoggingService, Utilities> {
public:
    // Of the arrays.
    static constexpr int kElements = 3;

    // "sim/int/10000" and up; likewise "sim/float/", "sim/ints/" and "sim/floats/".
    explicit SteadyWorld(int datarefsOfEachType);

    // What a connection does around feeding a protocol. Returns the size of the answer, and takes
    // nothing from the heap itself.
    unsigned long Exchange(IProtocol& protocol, Bytes& request);

    RingBuffer in;
    RingBuffer out;
};

// Equally long for every number below 90,000, so that a longer text takes no memory where a shorter
// one does not.
std::string numbered(const char* prefix, int number);
