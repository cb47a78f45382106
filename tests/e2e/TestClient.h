#pragma once

#include <optional>

#include "support/Bytes.h"

class SimulatorProcess;

// A client's socket, with nothing between the test and the wire.
class TestClient final {
public:
    // Connects to the plugin's port; the server accepts in one of its next frames. With a small
    // receive buffer, in bytes, the server has to send a large answer in parts.
    explicit TestClient(int receiveBuffer = 0);
    ~TestClient();
    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;

    void Send(const Bytes& bytes);
    // Waits until the server's system has taken all that was sent, whether or not the plugin has
    // looked at it; false if it has no room.
    bool IsDelivered() const;

    // Steps the simulator until a whole answer is there, and returns it with its length in front.
    // Throws when none comes within many frames or the connection ends.
    Bytes AnswerFrame(SimulatorProcess& simulator);
    // Without the length.
    Bytes Answer(SimulatorProcess& simulator);
    // Sends a request and returns its answer without the length.
    Bytes Exchange(SimulatorProcess& simulator, const Bytes& request);

    // What has arrived and was not taken by Answer, without stepping.
    const Bytes& Received();
    // Steps until the plugin has closed the connection; false if it does not within many frames.
    bool IsClosedByServer(SimulatorProcess& simulator);

    // Says that no more requests come, and goes on reading.
    void ShutdownSending();
    // Closes in an orderly way, or with a reset.
    void Close();
    void Reset();

private:
    // Takes in what is there; false once the connection has ended.
    bool receive();
    std::optional<Bytes> takeFrame();

    int socket = -1;
    bool ended = false;
    Bytes received;
};
