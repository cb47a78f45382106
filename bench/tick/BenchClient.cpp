#include "bench/tick/BenchClient.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "support/Deadline.h"

namespace {

constexpr std::uint16_t kPluginPort = 48000;
constexpr timeval kPatience{10, 0};

int checked(ssize_t result, const char* what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return static_cast<int>(result);
}

// 0 when there is no such end.
template <class GetName>
std::uint16_t portOf(int socket, GetName getName) {
    sockaddr_in address{};
    socklen_t length = sizeof(address);
    const bool found = getName(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
                       address.sin_family == AF_INET;
    return found ? ntohs(address.sin_port) : std::uint16_t{0};
}

sockaddr_in pluginAddress() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPluginPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

BenchClient::BenchClient()
    : socket(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    const sockaddr_in address = pluginAddress();
    checked(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)),
            "connect");
    checked(::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof(kPatience)),
            "SO_RCVTIMEO");
    port = portOf(socket, ::getsockname);
}

BenchClient::~BenchClient() {
    ::close(socket);
}

int BenchClient::AwaitAcceptance(const std::function<void()>& runFrame) const {
    int accepted = -1;
    const auto isAccepted = [&] {
        accepted = acceptedSocket();
        return accepted != -1;
    };
    if (!driveUntil(runFrame, isAccepted)) {
        throw std::runtime_error("the plugin accepts no client");
    }
    return accepted;
}

int BenchClient::acceptedSocket() const {
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int descriptor = std::stoi(entry.path().filename());
        if (portOf(descriptor, ::getpeername) == port) {
            return descriptor;
        }
    }
    return -1;
}

void BenchClient::Send(const Bytes& bytes) const {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t result = ::send(socket, bytes.data() + sent, bytes.size() - sent, 0);
        sent += static_cast<std::size_t>(checked(result, "send"));
    }
}

void BenchClient::Receive(Bytes& bytes) const {
    std::size_t received = 0;
    while (received < bytes.size()) {
        const ssize_t result = ::recv(socket, bytes.data() + received, bytes.size() - received, 0);
        if (result == 0) {
            throw std::system_error(ECONNRESET, std::generic_category(), "no answer");
        }
        received += static_cast<std::size_t>(checked(result, "no answer"));
    }
}
