#include "e2e/TestClient.h"

#include <arpa/inet.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "e2e/SimulatorProcess.h"

namespace {

constexpr std::uint16_t kPort = 48000;
constexpr std::ptrdiff_t kHeaderSize = 4;
// Loopback delivers within the frame; this many allow for a busy machine.
constexpr int kManyFrames = 20000;
constexpr std::chrono::seconds kDelivery(5);

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

TestClient::TestClient(int receiveBuffer) {
    socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int enabled = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &enabled, sizeof(enabled));
    if (receiveBuffer > 0) {
        ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof(receiveBuffer));
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == -1) {
        fail("connect");
    }
}

TestClient::~TestClient() {
    Close();
}

void TestClient::Send(const Bytes& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t result =
            ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (result == -1) {
            fail("send");
        }
        sent += static_cast<std::size_t>(result);
    }
}

bool TestClient::IsDelivered() const {
    const auto deadline = std::chrono::steady_clock::now() + kDelivery;
    int underWay = 0;
    do {
        ::ioctl(socket, SIOCOUTQ, &underWay);
        std::this_thread::yield();
    } while (underWay > 0 && std::chrono::steady_clock::now() < deadline);
    return underWay == 0;
}

Bytes TestClient::Answer(SimulatorProcess& simulator) {
    const Bytes frame = AnswerFrame(simulator);
    return {frame.begin() + kHeaderSize, frame.end()};
}

Bytes TestClient::AnswerFrame(SimulatorProcess& simulator) {
    for (int tries = 0; tries < kManyFrames; ++tries) {
        if (auto frame = takeFrame()) {
            return *frame;
        }
        if (ended) {
            throw std::runtime_error("the connection ended instead of an answer");
        }
        simulator.Step();
        receive();
    }
    throw std::runtime_error("no answer");
}

Bytes TestClient::Exchange(SimulatorProcess& simulator, const Bytes& request) {
    Send(request);
    return Answer(simulator);
}

const Bytes& TestClient::Received() {
    receive();
    return received;
}

bool TestClient::IsClosedByServer(SimulatorProcess& simulator) {
    for (int frame = 0; frame < kManyFrames; ++frame) {
        if (!receive()) {
            return true;
        }
        simulator.Step();
    }
    return false;
}

bool TestClient::receive() {
    unsigned char buffer[65536];
    ssize_t count = 0;
    while ((count = ::recv(socket, buffer, sizeof(buffer), MSG_DONTWAIT)) > 0) {
        received.insert(received.end(), buffer, buffer + count);
    }
    if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK)) {
        ended = true;
    }
    return !ended;
}

std::optional<Bytes> TestClient::takeFrame() {
    const auto available = static_cast<std::ptrdiff_t>(received.size());
    if (available < kHeaderSize) {
        return std::nullopt;
    }
    const std::ptrdiff_t length =
        received[0] | received[1] << 8 | received[2] << 16 | std::ptrdiff_t{received[3]} << 24;
    if (available < kHeaderSize + length) {
        return std::nullopt;
    }
    const auto end = received.begin() + kHeaderSize + length;
    Bytes frame(received.begin(), end);
    received.erase(received.begin(), end);
    return frame;
}

void TestClient::ShutdownSending() {
    ::shutdown(socket, SHUT_WR);
}

void TestClient::Close() {
    if (socket != -1) {
        ::close(socket);
        socket = -1;
    }
}

void TestClient::Reset() {
    const linger reset{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &reset, sizeof(reset));
    Close();
}
