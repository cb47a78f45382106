#include "bench/tick/Exchanges.h"

#include <sys/ioctl.h>

#include <stdexcept>
#include <utility>

#include "support/Deadline.h"
#include "support/TarnelMessages.h"

namespace {

constexpr int kInputs = 16;
constexpr std::size_t kRequests = 32;
constexpr int kWarmUpExchanges = 50;

constexpr std::uint32_t kFirstOutputIdentifier = 5000;

Bytes definitions(int outputCount) {
    std::vector<InputRecord> inputs;
    inputs.reserve(kInputs);
    for (int i = 0; i < kInputs; ++i) {
        inputs.push_back({.action = i + 1,
                          .targetType = RecordType::Float,
                          .scaling = RecordScaling::FloatRange,
                          .floatMinimum = -1.0F,
                          .floatMaximum = 1.0F,
                          .target = TickFlight::DatarefName(i)});
    }
    std::vector<OutputRecord> outputs;
    outputs.reserve(static_cast<std::size_t>(outputCount));
    for (int i = 0; i < outputCount; ++i) {
        outputs.push_back({.id = kFirstOutputIdentifier + static_cast<std::uint32_t>(i),
                           .name = TickFlight::DatarefName(i),
                           .type = RecordType::Float});
    }
    return tarnelRequest(definitionsMessage(inputs, outputs));
}

// Different for every `number`: all axes move all the time.
Bytes data(std::size_t number) {
    std::vector<std::pair<std::uint32_t, std::int32_t>> items;
    for (std::uint32_t i = 0; i < kInputs; ++i) {
        const std::size_t value = (number * 1021 + std::size_t{i} * 4099) % 65536;
        items.emplace_back(i + 1, static_cast<std::int32_t>(value));
    }
    return tarnelRequest(dataMessage(items));
}

// The frame's length, twelve bytes for each output, and as many for the aircraft.
std::size_t answerSize(int outputCount) {
    return 4 + 12 * (static_cast<std::size_t>(outputCount) + 1);
}

} // namespace

Exchanges::Exchanges(const std::string& plugin, int outputCount)
    : flight(plugin),
      accepted(client.AwaitAcceptance([this] { flight.RunFrame(); })),
      requests(kRequests),
      answer(answerSize(outputCount)) {
    deliver(definitions(outputCount));
    RunTicks();
    ReceiveAnswer();
    for (std::size_t i = 0; i < requests.size(); ++i) {
        requests[i] = data(i);
    }
    for (int i = 0; i < kWarmUpExchanges; ++i) {
        SendRequest();
        RunTicks();
        ReceiveAnswer();
    }
}

void Exchanges::SendRequest() {
    deliver(requests[nextRequest]);
    nextRequest = (nextRequest + 1) % requests.size();
}

void Exchanges::RunTicks() {
    flight.RunFrame();
    flight.RunFrame();
}

const Bytes& Exchanges::ReceiveAnswer() {
    client.TakeAnswer(answer);
    return answer;
}

// The plugin must find the request whole in the tick in which it looks.
void Exchanges::deliver(const Bytes& request) const {
    client.Send(request);
    const auto arrived = [&] {
        int waiting = 0;
        return ::ioctl(accepted, FIONREAD, &waiting) == 0 &&
               static_cast<std::size_t>(waiting) == request.size();
    };
    if (!driveUntil([] {}, arrived)) {
        throw std::runtime_error("a request does not reach the plugin");
    }
}
