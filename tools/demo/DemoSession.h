#pragma once

#include "tools/demo/Panel.h"
#include "tools/demo/RoundTripTimes.h"
#include "tools/demo/TarnelWire.h"
#include "tools/demo/TcpClient.h"

#include <cstdint>
#include <span>
#include <vector>

namespace demo {

// A client's conversation with the server: one request at a time, each answered before the next.
//
// NetworkError and WireError end it. Borrows the connection and the panel.
class DemoSession final {
public:
    DemoSession(TcpClient& connection, const Panel& declaredPanel);

    VersionAnswer ShakeHands();

    // Declares the outputs and then everything; the second answer is returned.
    OutputStream Declare();

    // One DATA message and its answer. What comes back was read before the values went in.
    OutputStream Exchange(std::span<const DataItem> items);

    // Of the DATA messages.
    const RoundTripTimes& Times() const { return times; }

private:
    Bytes ask(std::span<const std::uint8_t> request);

    TcpClient& client;
    const Panel& panel;
    const std::vector<OutputRecord> outputs;
    RoundTripTimes times;
};

} // namespace demo
