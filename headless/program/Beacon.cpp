#include "headless/program/Beacon.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>

namespace headless {

namespace {

using Bytes = std::vector<std::uint8_t>;
using std::chrono::steady_clock;

constexpr std::uint8_t kMajorVersion = 1;
constexpr std::uint8_t kMinorVersion = 2;
constexpr int kSimulator = 1;
constexpr int kMaster = 1;
// The simulator's own ports, on which nothing listens here.
constexpr int kUdpPort = 49000;
constexpr int kRaknetPort = 49010;

constexpr const char* kGroup = "239.255.1.1";
constexpr std::uint16_t kPort = 49707;
constexpr std::chrono::seconds kInterval(1);

void append(Bytes& bytes, int value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

// With the 0 at its end.
void append(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
}

Bytes datagramOf(int simulatorVersion) {
    std::array<char, 256> computer{};
    ::gethostname(computer.data(), computer.size() - 1);
    Bytes bytes;
    append(bytes, "BECN");
    append(bytes, kMajorVersion, 1);
    append(bytes, kMinorVersion, 1);
    append(bytes, kSimulator, 4);
    append(bytes, simulatorVersion, 4);
    append(bytes, kMaster, 4);
    append(bytes, kUdpPort, 2);
    append(bytes, computer.data());
    append(bytes, kRaknetPort, 2);
    return bytes;
}

} // namespace

Beacon::Beacon(int simulatorVersion)
    : datagram(datagramOf(simulatorVersion)),
      socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)),
      due(steady_clock::now()) {
    if (socket < 0) {
        throw std::system_error(errno, std::generic_category(), "--beacon");
    }
}

Beacon::~Beacon() {
    ::close(socket);
}

void Beacon::AfterFrame() {
    const auto now = steady_clock::now();
    if (now < due) {
        return;
    }
    due = now + kInterval;
    if (!send() && errno == ENETUNREACH) {
        const in_addr loopback{htonl(INADDR_LOOPBACK)};
        ::setsockopt(socket, IPPROTO_IP, IP_MULTICAST_IF, &loopback, sizeof loopback);
        send();
    }
}

bool Beacon::send() const {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    ::inet_pton(AF_INET, kGroup, &address.sin_addr);
    return ::sendto(socket, datagram.data(), datagram.size(), 0,
                    reinterpret_cast<const sockaddr*>(&address), sizeof address) >= 0;
}

} // namespace headless
