// Holds the brakes as long as it runs, like a button on a panel: it may start before the simulator,
// survives its restarts, and ends at Ctrl-C. However it ends, it releases the brakes.
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

// A command held on a lost connection is released on the next one, where the button, which is still
// pressed, holds it again.
void hold(tarnel::Client& client) {
    while (isStopped == 0) {
        try {
            client.exchange({{kBrakes, 1}});
        } catch (const orvane::TimeoutError&) {
            // The simulator is loading. The next call reconnects.
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
        client.close(); // releases the brakes
    } catch (const orvane::CancelledError& why) {
        say(why.what()); // Ctrl-C during a call: the brakes are released, or the text names them
    } catch (const orvane::Error& error) {
        std::fprintf(stderr, "held_button: %s\n", error.what());
        return 1;
    }
}
