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
#include <utility>
#include <vector>

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

// `fill` sets the fields of the request.
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

using Packet = std::vector<unsigned char>;

// Empty if there is no packet after all.
Packet readPacket(int from) {
    Packet packet(65536);
    const ssize_t size = ::read(from, packet.data(), packet.size());
    packet.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return packet;
}

// A packet that cannot be written is lost, as on any link.
void writePacket(int to, const Packet& packet) {
    [[maybe_unused]] const auto sent = ::write(to, packet.data(), packet.size());
}

// The checksum of `size` bytes, an even number, goes to the two bytes at `place`, which are zero.
void setChecksum(unsigned char* bytes, std::size_t size, std::size_t place) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < size; i += 2) {
        sum += static_cast<std::uint32_t>(bytes[i] << 8 | bytes[i + 1]);
    }
    while (sum > 0xFFFF) {
        sum = (sum & 0xFFFF) + (sum >> 16);
    }
    bytes[place] = static_cast<unsigned char>(~sum >> 8);
    bytes[place + 1] = static_cast<unsigned char>(~sum);
}

// An IPv4 header, the ICMP header, and the part of the packet that the rules require: its header
// and eight bytes.
Packet icmpAbout(const Packet& packet, unsigned char type, unsigned char code) {
    constexpr std::size_t kHeader = 20;
    constexpr std::size_t kQuotation = kHeader + 8;
    Packet message{0x45, 0,    0,  56, 0, 0, 0,  0,  64, IPPROTO_ICMP,
                   0,    0,    10, 77, 0, 2, 10, 77, 0,  1,
                   type, code, 0,  0,  0, 0, 0,  0};
    message.insert(message.end(), packet.begin(), packet.end());
    message.resize(message.size() - packet.size() + kQuotation);
    setChecksum(message.data(), kHeader, 10);
    setChecksum(message.data() + kHeader, message.size() - kHeader, 2);
    return message;
}

} // namespace

OtherMachine::OtherMachine() : stop(checked(::eventfd(0, EFD_CLOEXEC), "eventfd")) {
    std::exception_ptr failure;
    // A thread can have its own network; what was made there stays there.
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
    startCarrier([this] { writePacket(ownEnd, readPacket(simulatorsEnd)); });
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

void OtherMachine::DiscardPackets(unsigned char icmpType, unsigned char icmpCode) {
    LoseLink();
    startCarrier([this, icmpType, icmpCode] {
        writePacket(simulatorsEnd, icmpAbout(readPacket(simulatorsEnd), icmpType, icmpCode));
    });
}

void OtherMachine::TakeInterfaceDown() const {
    configure(SIOCSIFFLAGS, [](ifreq& settings) { settings.ifr_flags = 0; });
}

void OtherMachine::startCarrier(std::function<void()> forward) {
    carrier = std::thread([this, forward = std::move(forward)] { carryPackets(forward); });
}

void OtherMachine::carryPackets(const std::function<void()>& forward) const {
    pollfd ends[] = {{simulatorsEnd, POLLIN, 0}, {ownEnd, POLLIN, 0}, {stop, POLLIN, 0}};
    while (::poll(ends, 3, -1) > 0 && ends[2].revents == 0) {
        if (ends[0].revents != 0) {
            forward();
        }
        if (ends[1].revents != 0) {
            writePacket(simulatorsEnd, readPacket(ownEnd));
        }
    }
    eventfd_t stopped = 0;
    ::eventfd_read(stop, &stopped);
}
