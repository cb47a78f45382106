#include "support/BeaconSender.h"

#include <arpa/inet.h>
#include <unistd.h>

#include "support/Sockets.h"

namespace {

sockaddr_in addressOf(const std::string& text, std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    ::inet_pton(AF_INET, text.c_str(), &address.sin_addr);
    return address;
}

} // namespace

BeaconSender::BeaconSender(const std::string& address)
    : socket(checked(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket")) {
    const in_addr loopback{htonl(INADDR_LOOPBACK)};
    checked(::setsockopt(socket, IPPROTO_IP, IP_MULTICAST_IF, &loopback, sizeof loopback),
            "IP_MULTICAST_IF");
    const sockaddr_in from = addressOf(address, 0);
    checked(::bind(socket, reinterpret_cast<const sockaddr*>(&from), sizeof from), "bind");
}

BeaconSender::~BeaconSender() {
    ::close(socket);
}

void BeaconSender::Send(const Bytes& datagram) const {
    const sockaddr_in to = addressOf("239.255.1.1", 49707);
    checked(::sendto(socket, datagram.data(), datagram.size(), 0,
                     reinterpret_cast<const sockaddr*>(&to), sizeof to),
            "sendto");
}
