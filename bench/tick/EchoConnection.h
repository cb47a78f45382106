#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "XPLMDataAccess.h"
#include "network/ReservedBytes.h"

class SimStateInformation;

// The floor's connection to one client.
//
// Makes the calls to the system and to the simulator that a connection of the plugin makes, in the
// same order and with the same sizes, and puts each value straight into the frame that is sent.
// It understands only what the benchmark's client sends: whole messages that define only floats,
// and items in the order of their definitions.
class EchoConnection final {
public:
    // Takes over the socket, which is connected and non-blocking.
    EchoConnection(int acceptedSocket, const SimStateInformation& aircraft);
    ~EchoConnection();
    EchoConnection(const EchoConnection&) = delete;
    EchoConnection& operator=(const EchoConnection&) = delete;

    // One step: receive and write the answer, or send it.
    void ProcessEvents();
    bool IsClosed() const { return socket == -1; }

private:
    struct Output {
        std::uint32_t identifier;
        XPLMDataRef dataref;
    };

    void receive();
    void define();
    void writeAnswer();
    void applyItems() const;
    void sendAnswer();
    void close();
    void append(std::uint32_t word);

    int socket;
    const SimStateInformation& simState;
    ReservedBytes request;
    ReservedBytes frame;
    unsigned char* frameEnd = nullptr;
    bool sending = false;
    std::vector<XPLMDataRef> inputs;
    std::vector<Output> outputs;
};
