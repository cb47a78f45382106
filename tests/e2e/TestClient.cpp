#include "e2e/TestClient.h"

#include <cstddef>
#include <stdexcept>

#include "e2e/SimulatorProcess.h"

namespace {

constexpr std::ptrdiff_t kHeaderSize = 4;
// Loopback delivers within a frame; the others are for a busy machine.
constexpr int kManyFrames = 20000;

} // namespace

Bytes TestClient::Answer(SimulatorProcess& simulator) {
    const Bytes frame = AnswerFrame(simulator);
    return {frame.begin() + kHeaderSize, frame.end()};
}

Bytes TestClient::AnswerFrame(SimulatorProcess& simulator) {
    for (int tries = 0; tries < kManyFrames; ++tries) {
        if (auto frame = takeFrame()) {
            return *frame;
        }
        if (HasEnded()) {
            throw std::runtime_error("the connection ended instead of an answer");
        }
        simulator.Step();
        Received();
    }
    throw std::runtime_error("no answer");
}

Bytes TestClient::Exchange(SimulatorProcess& simulator, const Bytes& request) {
    Send(request);
    return Answer(simulator);
}

const Bytes& TestClient::Received() {
    const Bytes more = Receive();
    received.insert(received.end(), more.begin(), more.end());
    return received;
}

bool TestClient::IsClosedByServer(SimulatorProcess& simulator) {
    for (int frame = 0; frame < kManyFrames; ++frame) {
        Received();
        if (HasEnded()) {
            return true;
        }
        simulator.Step();
    }
    return false;
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
