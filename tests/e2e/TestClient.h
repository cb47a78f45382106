#pragma once

#include <optional>

#include "support/Bytes.h"
#include "support/TcpPeer.h"

class SimulatorProcess;

// A client of a paused simulator: it steps the simulator until its answer is there.
class TestClient final : public TcpPeer {
public:
    explicit TestClient(int receiveBuffer = 0) : TcpPeer(kPluginPort, receiveBuffer) {}

    // Steps the simulator until a whole answer is there, and returns it with its length in front.
    // Throws when none comes within many frames or the connection ends.
    Bytes AnswerFrame(SimulatorProcess& simulator);
    // Without the length.
    Bytes Answer(SimulatorProcess& simulator);
    // Sends a request and returns its answer without the length.
    Bytes Exchange(SimulatorProcess& simulator, const Bytes& request);

    // What has arrived since the last Answer, without stepping.
    const Bytes& Received();
    // Steps until the plugin has closed the connection; false if it does not within many frames.
    bool IsClosedByServer(SimulatorProcess& simulator);

private:
    std::optional<Bytes> takeFrame();

    Bytes received;
};
