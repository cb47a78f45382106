#pragma once

#include <functional>
#include <thread>

// A machine beside the simulator's: a network of its own, and a link between the two that a test
// can break. The link is a TUN device at either end, and a thread that carries the packets.
//
// Needs a private network, where nothing else uses its addresses.
class OtherMachine final {
public:
    // Throws std::system_error where the system does not permit it.
    OtherMachine();
    ~OtherMachine();
    OtherMachine(const OtherMachine&) = delete;
    OtherMachine& operator=(const OtherMachine&) = delete;

    // Connects to the simulator's port. The socket has a small receive buffer, so that a large
    // answer arrives in parts, and belongs to this object.
    int Connect() const;

    // From now on packets are lost in both directions.
    void LoseLink();
    // From now on a router discards the simulator's packets and reports that in ICMP messages.
    void DiscardPackets(unsigned char icmpType, unsigned char icmpCode);
    // The simulator's machine loses its interface, and its route to this one.
    void TakeInterfaceDown() const;

private:
    void openOwnEnd();
    // `forward` takes one packet of the simulator's from its end of the link.
    void startCarrier(std::function<void()> forward);
    void carryPackets(const std::function<void()>& forward) const;

    int stop;
    int ownEnd = -1;
    int client = -1;
    int simulatorsEnd = -1;
    std::thread carrier;
};
