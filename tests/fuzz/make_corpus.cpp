// Writes what the fuzz targets begin with: the exchanges of well-behaved clients, and a
// configuration file as the plugin leaves it.
//
// Usage: make_corpus FOLDER

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "fuzz/Script.h"
#include "support/TarnelMessages.h"
#include "support/VelmarMessages.h"

namespace {

// The identifications alone.

using Messages = std::vector<Bytes>;

Step tick() {
    return {Step::Kind::Tick, 0, {}};
}

// One message after the other, answered while the aircraft flies and the pilot presses commands.
Script exchange(const Messages& messages, const Bytes& identification) {
    Script script = {{Step::Kind::Aircraft, 1, {}}};
    std::uint8_t moment = 0;
    for (const Bytes& message : messages) {
        script.push_back({Step::Kind::Send, 0, join({identification, message})});
        script.insert(script.end(), 2, tick());
        script.push_back({Step::Kind::Receive, 0, {}});
        script.push_back({Step::Kind::Press, moment, {}});
        script.push_back({Step::Kind::Clock, 50, {}});
        moment = static_cast<std::uint8_t>(moment + 5);
    }
    return script;
}

// The same in two fragments, the second a tick later.
Script torn(const Messages& messages, const Bytes& identification) {
    Script script;
    for (const Bytes& message : messages) {
        const Bytes whole = join({identification, message});
        const auto middle = whole.begin() + static_cast<Bytes::difference_type>(whole.size() / 2);
        script.push_back({Step::Kind::Send, 0, Bytes(whole.begin(), middle)});
        script.push_back(tick());
        script.push_back({Step::Kind::Send, 0, Bytes(middle, whole.end())});
        script.insert(script.end(), 2, tick());
    }
    return script;
}

// An axis with a range of datarefs, a switch, a held command and a throttled one.
std::vector<InputRecord> controls() {
    InputRecord axis{.action = 1, .targetType = 4, .scaling = 3, .rangeType = 2};
    axis.target = "sim/floats";
    axis.rangeMinimumName = axis.rangeMaximumName = "sim/float";
    InputRecord elevator{.action = 1, .targetType = 2, .scaling = 2};
    elevator.floatMinimum = -1.0F;
    elevator.floatMaximum = 1.0F;
    elevator.target = "sim/float";
    InputRecord lever{.action = 2, .targetIndex = 1, .targetType = 3, .condition = 4};
    lever.target = "sim/ints";
    lever.conditionName = "sim/float";
    lever.conditionType = 2;
    InputRecord held{.action = 7, .targetType = 6, .hold = 1};
    held.target = "kyr/press";
    InputRecord throttled{.action = 1002, .repeatInterval = 200, .targetType = 6};
    throttled.target = "sim/up";
    InputRecord doubled{.action = 1005, .targetType = 6};
    doubled.target = "sim/down";
    return {axis, elevator, lever, held, throttled, doubled};
}

std::vector<OutputRecord> reports() {
    return {{.id = 1, .name = "sim/int", .type = 1},
            {.id = 2, .name = "kyr/float", .type = 2},
            {.id = 3, .name = "sim/ints", .type = 3, .first = 1, .count = 3},
            {.id = 4, .name = "kyr/floats", .type = 4, .count = 4},
            {.id = 5, .name = "kyr/press", .type = 6},
            {.id = 6, .name = "kyr/int", .type = 1},
            {.id = 7, .name = "kyr/ints", .type = 3, .count = 4},
            {.id = 8, .name = "sim/absent", .type = 4, .count = 2}};
}

// Every scaling with every condition, on an axis.
std::vector<InputRecord> axes() {
    std::vector<InputRecord> inputs;
    for (std::int32_t variant = 0; variant < 20; ++variant) {
        InputRecord axis{.action = 1, .targetType = 2, .scaling = variant % 4};
        axis.intMinimum = -5;
        axis.intMaximum = 5;
        axis.rangeType = variant % 2 == 0 ? 2 : 4;
        axis.condition = variant % 5;
        axis.conditionType = 1 + variant % 4;
        constexpr const char* kConditions[] = {"sim/int", "sim/float", "sim/ints", "sim/floats"};
        axis.target = "kyr/float";
        axis.conditionName = kConditions[variant % 4];
        axis.rangeMinimumName = axis.rangeMaximumName = "sim/floats";
        inputs.push_back(axis);
    }
    return inputs;
}

Messages axisMessages() {
    return {definitionsMessage(axes(), {}), dataMessage({{1, 65535}, {1, 1}, {1, 0}})};
}

Messages tarnelMessages() {
    return {versionMessage(),
            definitionsMessage(controls(), reports()),
            dataMessage({{1, 65535}, {2, 1}, {7, 1}, {1002, 1}, {1005, 1}}),
            dataMessage({{1, 0}, {2, 0}, {7, 0}, {1002, 1}}),
            {},
            dataMessage({{99, 1}}),
            definitionsMessage({}, {})};
}

Messages velmarMessages() {
    return {join({registerDataref(1, 1, 0, "sim/int"), registerDataref(2, 2, 0, "sim/float"),
                  registerDataref(3, 4, 4, "sim/ints"), registerDataref(4, 5, 4, "sim/floats"),
                  registerDataref(5, 3, 0, "sim/int"), registerDataref(6, 1, 0, "sim/absent")}),
            join({registerCommand(1, "kyr/press"), registerCommand(2, "sim/up"),
                  registerCommand(3, "sim/none, and long enough")}),
            join({writeDataref(1, i32(5)), writeDataref(2, f32(0.5F)), writeDataref(3, zeros(16)),
                  writeDataref(4, zeros(16)), writeDataref(5, {200})}),
            join({readDataref(1), readDataref(2), readDataref(3), readDataref(4), readDataref(5),
                  readDataref(9)}),
            join({runCommand(1, 1), runCommand(1, 2), runCommand(1, 0), runCommand(2, 1)}),
            pollCommandStates(),
            join({unregisterDataref(1), unregisterCommand(1), unregisterCommand(9)})};
}

void write(const std::filesystem::path& folder, const std::string& name, const Bytes& content) {
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
}

void writeProtocol(const std::filesystem::path& folder, const Messages& messages,
                   const Bytes& identification) {
    const std::string name = identification == kVelmar ? "velmar" : "tarnel";
    write(folder, name, toBytes(exchange(messages, identification)));
    write(folder, name + "-torn", toBytes(torn(messages, identification)));
}

// Every way in which a socket call may fail, each before an exchange of its own.
void writeFaults(const std::filesystem::path& folder) {
    constexpr std::uint8_t kKindsOfFault = 64;
    for (std::uint8_t argument = 0; argument < kKindsOfFault; ++argument) {
        Script script = {{Step::Kind::Send, 0, {}}, tick(), {Step::Kind::Fault, argument, {}}};
        script.push_back({Step::Kind::Send, 0, tarnelRequest(versionMessage())});
        script.insert(script.end(), 3, tick());
        script.push_back({Step::Kind::Leave, 3, {}});
        script.push_back({Step::Kind::Send, 1, kTarnel});
        script.insert(script.end(), 3, tick());
        write(folder, "fault-" + std::to_string(argument), toBytes(script));
    }
}

// Clients that vanish in their different ways with a request under way.
void writeLeavers(const std::filesystem::path& folder) {
    for (std::uint8_t manner = 0; manner < 4; ++manner) {
        Script script = {{Step::Kind::Send, 0, tarnelRequest(versionMessage())}, tick()};
        script.push_back({Step::Kind::Leave, manner, {}});
        script.insert(script.end(), 3, tick());
        write(folder, "leave-" + std::to_string(manner), toBytes(script));
    }
    const std::string web = "GET / HTTP/1.1\r\nHost: localhost\r\n\r\n";
    write(folder, "http", toBytes(Script{{Step::Kind::Send, 0, Bytes(web.begin(), web.end())}}));
}

void writeConfigs(const std::filesystem::path& folder) {
    const std::string left = "\nkyr/force float\nkyr/switch int\nkyr/lamps int_array 8";
    const std::string written =
        "# our cockpit\nkyr/light float\nkyr/lamps int_array 8 # eight lamps\n"
        "kyr/gauges float_array 4\nkyr/blob byte_array 256\nkyr/exact double\n\nkyr/broken\n";
    write(folder, "left", Bytes(left.begin(), left.end()));
    write(folder, "written", Bytes(written.begin(), written.end()));
}

// A choice of outputs or packets, and an answer to them; fuzz_client.cpp has the format.
void writeAnswers(const std::filesystem::path& folder) {
    const Bytes aircraft = fromHex("FF FF 00 00 04 00 00 00 5C 2B 57 A4");
    write(folder, "outputs",
          join({fromHex("00 03 00 04 08"), fromHex("00 00 00 00 04 00 00 00 01 00 00 00"),
                fromHex("01 00 00 00 01 00 00 00 01"),
                fromHex("02 00 00 00 08 00 00 00 00 00 80 3F 00 00 00 40"), aircraft}));
    write(folder, "no-aircraft",
          join({fromHex("00 01 04"), fromHex("00 00 00 00 00 00 00 00 01 00 00 00 00"),
                fromHex("FF FF 00 00 04 00 00 00 00 00 00 00")}));
    write(folder, "registered",
          join({fromHex("01 02 00 01"), fromHex("01 00 00 00 01 00 00 00 01 00 00 00"),
                fromHex("03 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00")}));
    write(folder, "read",
          join({fromHex("01 02 06 05"), fromHex("05 00 00 00 01 00 00 00 01 00 00 00"),
                fromHex("04 00 00 00 00 00 80 3F"), fromHex("01 00 00 00 09 00 00 00 02")}));
    write(folder, "version", fromHex("02 B1 6B 00 B5 01 00 07 0A 06 00 00 00"));
}

// Every key of a profile once.
void writeProfiles(const std::filesystem::path& folder) {
    const std::string profile =
        "[connection]\nhost = \"sim\"\nport = 48000\nrate = 50\n"
        "[[input]]\nname = \"pitch\"\ndataref = \"sim/x\"\ntype = \"float\"\n"
        "scaling = { float_range = [-1.0, 1.0] }\nskip = { when_value = 1 }\n"
        "[[input]]\nname = \"pitch\"\ndataref = \"sim/y\"\ntype = \"float\"\nelement = 3\n"
        "scaling = { datarefs = [\"sim/min\", \"sim/max\"], element = 1 }\n"
        "[[input]]\nname = \"flaps\"\ndataref = \"sim/i\"\ntype = \"int\"\nfixed = 4\naction = 7\n"
        "[[input]]\nname = \"brakes\"\ncommand = \"sim/c\"\nhold = true\n"
        "skip = { while_positive = \"sim/p\", type = \"int\", element = 2 }\n"
        "[[input]]\nname = \"trim\"\ncommand = \"sim/d\"\nrepeat_ms = 200\n"
        "[[output]]\nname = \"f\"\ndataref = \"kyr/f\"\ntype = \"float\"\n"
        "[[output]]\nname = \"is\"\ndataref = \"sim/is\"\ntype = \"int\"\ncount = 4\nfirst = 2\n"
        "[[output]]\nname = \"c\"\ncommand = \"kyr/c\"\n";
    write(folder, "every-key", Bytes(profile.begin(), profile.end()));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_corpus FOLDER\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    writeProtocol(folder / "fuzz_tarnel", tarnelMessages(), {});
    write(folder / "fuzz_velmar", "velmar", toBytes(exchange(velmarMessages(), {})));
    write(folder / "fuzz_velmar", "velmar-torn", toBytes(torn(velmarMessages(), {})));
    write(folder / "fuzz_tarnel", "axes", toBytes(exchange(axisMessages(), {})));
    write(folder / "fuzz_velmar", "empty-array",
          toBytes(exchange(
              {join({registerDataref(1, 4, 0, "sim/ints"), writeDataref(1, {}), readDataref(1)})},
              {})));
    writeProtocol(folder / "fuzz_connection", tarnelMessages(), kTarnel);
    writeProtocol(folder / "fuzz_connection", velmarMessages(), kVelmar);
    writeFaults(folder / "fuzz_connection");
    writeLeavers(folder / "fuzz_connection");
    writeConfigs(folder / "fuzz_config");
    writeAnswers(folder / "fuzz_client");
    writeConfigs(folder / "fuzz_config_check");
    writeProfiles(folder / "fuzz_profile");
    return 0;
}
