#pragma once

#include <string>

#include "support/Bytes.h"

// Sends the datagrams of a simulator's beacon to this computer only.
class BeaconSender final {
public:
    // From 127.0.0.1, or another address that begins with 127. Throws std::system_error.
    explicit BeaconSender(const std::string& address = "127.0.0.1");
    ~BeaconSender();
    BeaconSender(const BeaconSender&) = delete;
    BeaconSender& operator=(const BeaconSender&) = delete;

    void Send(const Bytes& datagram) const;

private:
    int socket;
};
