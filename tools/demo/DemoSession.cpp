#include "tools/demo/DemoSession.h"

#include <chrono>

namespace demo {

namespace {

// Generous: a simulator that loads scenery runs no frames for a while.
constexpr std::chrono::seconds kAnswerTimeout(10);

} // namespace

DemoSession::DemoSession(TcpClient& connection, const Panel& declaredPanel)
    : client(connection), panel(declaredPanel), outputs(declaredPanel.Outputs()) {}

VersionAnswer DemoSession::ShakeHands() {
    return DecodeVersion(ask(EncodeVersion()));
}

OutputStream DemoSession::Declare() {
    // Inputs are bound before the outputs of the same message have made their names known. So that
    // inputs can have our own names as targets, these are published by a message of their own.
    DecodeOutputs(ask(EncodeDefinitions({}, outputs)), outputs);
    return DecodeOutputs(ask(EncodeDefinitions(panel.Inputs(), outputs)), outputs);
}

OutputStream DemoSession::Exchange(std::span<const DataItem> items) {
    const auto start = std::chrono::steady_clock::now();
    const Bytes answer = ask(EncodeData(items));
    times.Add(std::chrono::duration_cast<RoundTripTimes::Microseconds>(
        std::chrono::steady_clock::now() - start));
    return DecodeOutputs(answer, outputs);
}

Bytes DemoSession::ask(std::span<const std::uint8_t> request) {
    client.Send(request, kAnswerTimeout);
    return client.ReceiveFrame(kAnswerTimeout);
}

} // namespace demo
