#include "soak/SoakClients.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "e2e/SimulatorProcess.h"
#include "support/TarnelMessages.h"
#include "support/VelmarMessages.h"

namespace {

constexpr std::size_t kStorm = 100;
constexpr std::size_t kAircraftEntry = 12;
constexpr std::size_t kNumberEntry = 12;
constexpr std::size_t kCommandEntry = 9;
constexpr const char* kPitch = "sim/cockpit2/controls/yoke_pitch_ratio";

void expectSize(const Bytes& answer, std::size_t size) {
    if (answer.size() != size) {
        throw std::runtime_error("an answer of " + std::to_string(answer.size()) +
                                 " bytes instead of " + std::to_string(size));
    }
}

} // namespace

SoakClients::SoakClients(SimulatorProcess& flownSimulator) : simulator(flownSimulator) {
    Reconnect();
}

void SoakClients::Reconnect() {
    controls = std::make_unique<TestClient>();
    panel = std::make_unique<TestClient>();
    served += 2;
}

void SoakClients::Storm() {
    std::vector<std::unique_ptr<TestClient>> clients;
    while (clients.size() < kStorm) {
        clients.push_back(std::make_unique<TestClient>());
        clients.back()->Send(Bytes(clients.size() % 4, 0x11));
        // The server accepts one in each.
        simulator.Step();
    }
    TestClient last;
    expectSize(last.Exchange(simulator, tarnelRequest(versionMessage())), 12);
    for (std::size_t i = 0; i < clients.size(); i += 2) {
        clients[i]->CloseWithReset();
        ++resets;
    }
    clients.clear();
    last.Close();
    // The plugin sees all ends in one frame and cleans up in the next.
    simulator.Step(2);
    served += kStorm + 1;
}

void SoakClients::Play(std::size_t round) {
    redefine(round);
    fly();
    registerAnew();
    visitAndClose();
    visitAndHalfClose();
    visitAndVanish(round);
    // The plugin sees each end in one frame and cleans up in the next.
    simulator.Step(5);
}

// From one to forty outputs, in turn, and the same command under another name's place.
void SoakClients::redefine(std::size_t round) {
    const std::size_t count = 1 + round % 40;
    const InputRecord input{.action = 1,
                            .targetType = RecordType::Float,
                            .scaling = 2,
                            .floatMinimum = -1.0F,
                            .floatMaximum = 1.0F,
                            .target = kPitch};
    std::vector<OutputRecord> outputs(count, {.id = 2, .name = kPitch, .type = RecordType::Float});
    outputs.push_back({.id = 3, .name = "kyr/soak_button", .type = RecordType::Command});
    const Bytes answer =
        controls->Exchange(simulator, tarnelRequest(definitionsMessage({input}, outputs)));
    expectSize(answer, count * kNumberEntry + kCommandEntry + kAircraftEntry);
}

// The value that an axis is moved to, and the button pressed, are seen in the next answer.
void SoakClients::fly() {
    simulator.Ask("command once kyr/soak_button");
    const Bytes before = controls->Exchange(simulator, tarnelRequest(dataMessage({{1, 65535}})));
    const Bytes after = controls->Exchange(simulator, tarnelRequest(dataMessage({{1, 0}})));
    const auto buttonOf = [](const Bytes& answer) {
        return answer.at(answer.size() - kAircraftEntry - 1);
    };
    if (buttonOf(before) != 1 || buttonOf(after) != 0) {
        throw std::runtime_error("the button was not reported once");
    }
    if (toHex({after.begin() + 8, after.begin() + 12}) != "00 00 80 3F") {
        throw std::runtime_error("the axis did not move");
    }
}

void SoakClients::registerAnew() {
    const Bytes answer = panel->Exchange(
        simulator,
        velmarRequest({registerDataref(7, 2, 0, "sim/time/zulu_time_sec"), readDataref(7),
                       registerCommand(9, "sim/flight_controls/flaps_down"), runCommand(9, 1),
                       pollCommandStates(), unregisterCommand(9), unregisterDataref(7)}));
    // Two registrations, a float, a poll that lists the command, two farewells.
    expectSize(answer, 12 + 20 + 12 + 9 + 12 + 12);
}

void SoakClients::visitAndClose() {
    TestClient client;
    expectSize(client.Exchange(simulator, tarnelRequest(versionMessage())), 12);
    const OutputRecord elements{
        .id = 1, .name = "kyr/soak_elements", .type = RecordType::FloatArray, .count = 16};
    expectSize(client.Exchange(simulator, tarnelRequest(definitionsMessage({}, {elements}))),
               8 + 64 + kAircraftEntry);
    ++served;
}

void SoakClients::visitAndHalfClose() {
    TestClient client;
    client.Send(velmarRequest({registerCommand(1, "sim/flight_controls/flaps_down")}));
    client.HalfClose();
    expectSize(client.Answer(simulator), 12);
    if (!client.IsClosedByServer(simulator)) {
        throw std::runtime_error("a connection was not closed");
    }
    ++served;
}

// At one of five moments, from before it is accepted to the middle of a large answer. The client's
// system resets the connection, and the plugin's send fails without a log line.
void SoakClients::visitAndVanish(std::size_t round) {
    TestClient client(4096);
    client.Send(tarnelRequest(definitionsMessage(
        {}, {{.id = 1, .name = "no/such", .type = RecordType::FloatArray, .count = 2'000'000}})));
    const std::size_t frames = round % 5;
    simulator.Step(static_cast<int>(frames));
    client.Close();
    ++served;
}
