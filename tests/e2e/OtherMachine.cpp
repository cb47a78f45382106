#include "e2e/OtherMachine.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <exception>
#include <system_error>

namespace {

constexpr const char* kDevice = "orvane";
constexpr const char* kSimulatorsAddress = "10.77.0.1";
constexpr const char* kOwnAddress = "10.77.0.2";
constexpr std::uint16_t kPort = 48000;
constexpr int kReceiveBuffer = 4096;

int checked(int result, const char* what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

sockaddr_in addressOf(const char* text, std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    ::inet_pton(AF_INET, text, &address.sin_addr);
    return address;
}

// `fill` puts into the request what the device is to get.
template <class Fill>
void configure(unsigned long command, Fill fill) {
    ifreq request{};
    std::strcpy(request.ifr_name, kDevice);
    fill(request);
    const int socket = checked(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket");
    const int result = ::ioctl(socket, command, &request);
    ::close(socket);
    checked(result, "the tunnel's settings");
}

void setAddress(unsigned long command, const char* text) {
    configure(command, [&](ifreq& request) {
        const sockaddr_in address = addressOf(text, 0);
        std::memcpy(&request.ifr_addr, &address, sizeof(address));
    });
}

// In the calling thread's network.
int openTunnel(const char* ownAddress, const char* otherAddress) {
    const int tunnel = checked(::open("/dev/net/tun", O_RDWR | O_CLOEXEC), "/dev/net/tun");
    ifreq request{};
    std::strcpy(request.ifr_name, kDevice);
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    checked(::ioctl(tunnel, TUNSETIFF, &request), "TUNSETIFF");
    setAddress(SIOCSIFADDR, ownAddress);
    setAddress(SIOCSIFDSTADDR, otherAddress);
    configure(SIOCSIFFLAGS, [](ifreq& settings) { settings.ifr_flags = IFF_UP | IFF_RUNNING; });
    return tunnel;
}

void carry(int from, int to) {
    unsigned char packet[65536];
    const ssize_t size = ::read(from, packet, sizeof(packet));
    if (size > 0) {
        // What does not go through is lost, as on any link.
        [[maybe_unused]] const auto sent = ::write(to, packet, static_cast<std::size_t>(size));
    }
}

} // namespace

OtherMachine::OtherMachine() : stop(checked(::eventfd(0, EFD_CLOEXEC), "eventfd")) {
    std::exception_ptr failure;
    // A thread can have a network of its own, in which stays what was made there.
    std::thread([&] {
        try {
            openOwnEnd();
        } catch (const std::system_error&) {
            failure = std::current_exception();
        }
    }).join();
    if (failure) {
        std::rethrow_exception(failure);
    }
    simulatorsEnd = openTunnel(kSimulatorsAddress, kOwnAddress);
    carrier = std::thread([this] { carryPackets(); });
}

void OtherMachine::openOwnEnd() {
    checked(::unshare(CLONE_NEWNET), "unshare");
    ownEnd = openTunnel(kOwnAddress, kSimulatorsAddress);
    client = checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
}

OtherMachine::~OtherMachine() {
    LoseLink();
    for (const int file : {client, ownEnd, simulatorsEnd, stop}) {
        ::close(file);
    }
}

int OtherMachine::Connect() const {
    ::setsockopt(client, SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof(kReceiveBuffer));
    const sockaddr_in address = addressOf(kSimulatorsAddress, kPort);
    checked(::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof(address)),
            "connect");
    return client;
}

void OtherMachine::LoseLink() {
    if (carrier.joinable()) {
        checked(::eventfd_write(stop, 1), "eventfd");
        carrier.join();
    }
}

void OtherMachine::TakeInterfaceDown() const {
    configure(SIOCSIFFLAGS, [](ifreq& settings) { settings.ifr_flags = 0; });
}

void OtherMachine::carryPackets() const {
    pollfd ends[] = {{simulatorsEnd, POLLIN, 0}, {ownEnd, POLLIN, 0}, {stop, POLLIN, 0}};
    while (::poll(ends, 3, -1) > 0 && ends[2].revents == 0) {
        if (ends[0].revents != 0) {
            carry(simulatorsEnd, ownEnd);
        }
        if (ends[1].revents != 0) {
            carry(ownEnd, simulatorsEnd);
        }
    }
}
