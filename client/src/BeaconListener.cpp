#include "BeaconListener.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <span>
#include <system_error>

#include "Beacon.h"
#include "Connection.h"
#include "orvane/Errors.h"

namespace orvane::detail {

namespace {

// A flood of false beacons must not fill the memory.
constexpr std::size_t kMostSimulators = 64;
// Longer than any beacon.
constexpr std::size_t kBufferSize = 2048;

sockaddr_in beaconAddress() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kBeaconPort);
    ::inet_pton(AF_INET, kBeaconGroup, &address.sin_addr);
    return address;
}

std::string textOf(const in_addr& address) {
    std::array<char, INET_ADDRSTRLEN> text{};
    return ::inet_ntop(AF_INET, &address, text.data(), text.size());
}

} // namespace

BeaconListener::BeaconListener(const Options& options) : options(options) {
    try {
        open();
    } catch (...) {
        ::close(socket);
        throw;
    }
}

BeaconListener::~BeaconListener() {
    ::close(socket);
}

void BeaconListener::open() {
    socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) {
        fail(std::generic_category().message(errno));
    }
    // A simulator and other programs on this computer listen on the same port.
    const int one = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    const sockaddr_in address = beaconAddress();
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        fail(std::generic_category().message(errno));
    }
    if (!joinOnAllInterfaces()) {
        fail("no network interface receives multicast");
    }
}

bool BeaconListener::joinOnAllInterfaces() const {
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) {
        fail(std::generic_category().message(errno));
    }
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);
    bool hasJoined = false;
    for (const ifaddrs* each = first; each != nullptr; each = each->ifa_next) {
        if (each->ifa_addr != nullptr && each->ifa_addr->sa_family == AF_INET) {
            sockaddr_in address{};
            std::memcpy(&address, each->ifa_addr, sizeof address);
            const ip_mreq membership{beaconAddress().sin_addr, address.sin_addr};
            hasJoined |= ::setsockopt(socket, IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership,
                                      sizeof membership) == 0;
        }
    }
    return hasJoined;
}

std::optional<HeardSimulator> BeaconListener::next(Clock::time_point end) {
    // The time also ends a flood of datagrams.
    while (Clock::now() < end) {
        const Waited waited = waitFor(socket, POLLIN, end, options.cancelled);
        if (waited == Waited::Cancelled) {
            throw CancelledError(errorPrefix(options, "listening for simulators") +
                                 "was cancelled");
        }
        if (waited == Waited::Ready) {
            if (auto heard = receive()) {
                return heard;
            }
        }
    }
    return std::nullopt;
}

std::optional<HeardSimulator> BeaconListener::receive() {
    std::array<std::uint8_t, kBufferSize> buffer{};
    sockaddr_in sender{};
    socklen_t size = sizeof sender;
    const ssize_t received = ::recvfrom(socket, buffer.data(), buffer.size(), 0,
                                        reinterpret_cast<sockaddr*>(&sender), &size);
    if (received < 0 || known.size() >= kMostSimulators) {
        return std::nullopt;
    }
    auto simulator = parseBeacon(std::span(buffer).first(static_cast<std::size_t>(received)));
    if (!simulator || !known.insert(sender.sin_addr.s_addr).second) {
        return std::nullopt;
    }
    simulator->address = textOf(sender.sin_addr);
    return simulator;
}

void BeaconListener::fail(const std::string& why) const {
    throw ConnectError(errorPrefix(options, "listening for simulators") + why);
}

} // namespace orvane::detail
