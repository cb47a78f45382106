#include "bench/tick/IdleTicks.h"

namespace {

// What the first frames do once is not measured.
constexpr int kWarmUpTicks = 1000;

} // namespace

IdleTicks::IdleTicks(const std::string& plugin, int clientCount) : flight(plugin) {
    for (int i = 0; i < clientCount; ++i) {
        clients.push_back(std::make_unique<BenchClient>());
        clients.back()->AwaitAcceptance([this] { flight.RunFrame(); });
    }
    for (int i = 0; i < kWarmUpTicks; ++i) {
        RunTick();
    }
}
