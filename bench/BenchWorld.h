#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/LoggingService.h"
#include "common/Utilities.h"
#include "datarefs/DatarefProvider.h"
#include "headless/xplm/Simulator.h"
#include "network/NetworkResources.h"
#include "network/RingBuffer.h"
#include "network/TcpServer.h"
#include "plugin/XPlanePlugin.h"
#include "protocols/ProtocolFactory.h"
#include "support/Bytes.h"
#include "support/PluginWorld.h"

// A simulator with an aircraft, and the plugin's real objects in it except for the network:
// requests and answers pass through `in` and `out`.
//
// Nothing is recorded while a benchmark runs, so that nothing grows.
class BenchWorld final : public PluginWorld<LoggingService, Utilities> {
public:
    BenchWorld();

    // `count` datarefs "sim/bench/KIND/dataref_10000" and up, with values that differ. Arrays have
    // `elements` elements.
    std::vector<std::string> DefineDatarefs(const std::string& kind, XPLMDataTypeID type,
                                            std::int64_t count, int elements = 0);
    std::vector<std::string> DefineCommands(std::int64_t count);

    // Ends the program unless both make the same calls and the simulator refuses none of them.
    void RequireSameCalls(const std::function<void()>& ours, const std::function<void()>& floor);

    // What a connection does before it feeds the protocol.
    void Receive(Bytes& request) {
        in.ResetBuffer();
        out.ResetBuffer();
        in.WriteByteArray(request.data(), request.size());
    }

    RingBuffer in;
    RingBuffer out;
};

// Ends the program with the first difference.
void requireSameBytes(const Bytes& ours, const Bytes& floor);
