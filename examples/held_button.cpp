// Holds the brakes for as long as it runs, as a button on a panel would: from before the simulator
// starts, across its restarts, until Ctrl-C. Whenever it ends, the brakes are let go.
//
// Usage: held_button [HOST]

#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "orvane/tarnel/Client.h"

namespace {

namespace tarnel = orvane::tarnel;

constexpr const char* kCommand = "sim/flight_controls/brakes_max";
constexpr tarnel::ActionId kBrakes = 1;
constexpr std::chrono::milliseconds kStep(50);

volatile std::sig_atomic_t isStopped = 0;

extern "C" void stop(int /*signal*/) {
    isStopped = 1;
}

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

orvane::Options optionsFor(const char* host) {
    orvane::Options options;
    options.host = host;
    options.onStart = orvane::OnStart::Wait;
    options.backoff.within = std::chrono::hours(24);
    options.cancelled = [] { return isStopped != 0; };
    return options;
}

orvane::Callbacks callbacks() {
    return {
        .connected = [] { say("connected again"); },
        .disconnected = [](const orvane::Error& why) { say(why.what()); },
        .notReleased =
            [](const std::vector<std::string>& commands, const orvane::Error& why) {
                say(commands.front() + " may still be down: " + why.what());
            },
    };
}

// What was held on a connection that is lost is let go on the next one, where the button, which is
// still pressed, holds it again.
void hold(tarnel::Client& client) {
    while (isStopped == 0) {
        try {
            client.exchange({{kBrakes, 1}});
        } catch (const orvane::TimeoutError&) {
            // The simulator loads something. The next call connects again.
        }
        std::this_thread::sleep_for(kStep);
    }
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGINT, stop);
    std::signal(SIGTERM, stop);
    const orvane::Options options = optionsFor(argc > 1 ? argv[1] : "127.0.0.1");
    say("waiting for the simulator at " + options.host);
    try {
        tarnel::Client client(options);
        client.setCallbacks(callbacks());
        tarnel::Definitions definitions;
        definitions.add(tarnel::Input::toCommand(kBrakes, kCommand).held());
        client.define(definitions);
        say("holding the brakes until Ctrl-C");
        hold(client);
        client.close(); // lets go
    } catch (const orvane::CancelledError& why) {
        say(why.what()); // Ctrl-C within a call: the brakes are let go, or the text names them
    } catch (const orvane::Error& error) {
        std::fprintf(stderr, "held_button: %s\n", error.what());
        return 1;
    }
}
