#include "tools/demo/VelmarPanel.h"

#include <fmt/format.h>

#include <chrono>

namespace demo {

namespace {

constexpr std::chrono::seconds kAnswerTimeout(10);

// Numbers of our choice.
constexpr std::uint32_t kAirspeed = 1;
constexpr std::uint32_t kThrottle = 2;
constexpr std::uint32_t kCounter = 3;
constexpr std::uint32_t kFlaps = 4;

constexpr std::size_t kThrottleElements = 2;
constexpr std::int32_t kCounterSteps = 1000;

std::string describeState(const std::vector<VelmarCommandState>& states) {
    if (states.empty()) {
        return "never";
    }
    return states.front().state == 1 ? "down" : "was pressed";
}

} // namespace

VelmarPanel::VelmarPanel(TcpClient& connection) : client(connection) {}

void VelmarPanel::Register() {
    VelmarRequest request;
    request.RegisterDataref(kAirspeed, VelmarType::Float, 1,
                            "sim/cockpit2/gauges/indicators/airspeed_kts_pilot");
    request.RegisterDataref(kThrottle, VelmarType::FloatArray, kThrottleElements,
                            "sim/cockpit2/engine/actuators/throttle_ratio");
    request.RegisterDataref(kCounter, VelmarType::Int, 1, "kyr/autopilot_external_control");
    request.RegisterCommand(kFlaps, "sim/flight_controls/flaps_down");
    client.Send(request.Wire(), kAnswerTimeout);

    VelmarAnswer answer(client.ReceiveFrame(kAnswerTimeout));
    answer.ExpectDone(velmar_packet::kRegisterDataref, kAirspeed);
    answer.ExpectDone(velmar_packet::kRegisterDataref, kThrottle);
    answer.ExpectDone(velmar_packet::kRegisterDataref, kCounter);
    answer.ExpectDone(velmar_packet::kRegisterCommand, kFlaps);
    answer.ExpectEnd();
}

void VelmarPanel::Send() {
    counter = (counter + 1) % kCounterSteps;
    VelmarRequest request;
    request.WriteInt(kCounter, counter);
    request.Read(kCounter);
    request.Read(kAirspeed);
    request.Read(kThrottle);
    request.PollCommands();
    client.Send(request.Wire(), kAnswerTimeout);
}

void VelmarPanel::Receive() {
    VelmarAnswer answer(client.ReceiveFrame(kAnswerTimeout));
    answer.ExpectDone(velmar_packet::kWrite, kCounter);
    const std::int32_t counted = answer.Int(kCounter);
    const float airspeed = answer.Float(kAirspeed);
    const std::vector<float> throttle = answer.Floats(kThrottle, kThrottleElements);
    const std::vector<VelmarCommandState> states = answer.CommandStates();
    answer.ExpectEnd();

    values = {{"counter", fmt::format("{}", counter), fmt::format("{}", counted), "int, shared"},
              {"airspeed", "", fmt::format("{:.3f}", airspeed), "float, knots"},
              {"throttle", "", fmt::format("{:.3f}", fmt::join(throttle, "/")), "floats"},
              {"flaps dn", "", describeState(states), "command, polled"}};
}

} // namespace demo
