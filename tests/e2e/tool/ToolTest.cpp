#include "e2e/tool/ToolTest.h"

#include "support/Text.h"

void ToolTest::fly(const std::string& framesPerSecond) {
    simulator.reset();
    simulator = std::make_unique<SimulatorProcess>(std::vector<std::string>{
        "--datarefs", "DataRefs.txt", "--commands", "Commands.txt", "--hz", framesPerSecond});
    loadAircraft("Test aircraft one");
    simulator->Ask("run");
}

std::string ToolTest::play(const std::string& options, const std::string& statements) {
    return outputOf("printf '" + statements +
                    "' | " HEADLESS_SIM " " PLUGIN " --datarefs DataRefs.txt --paused --script - " +
                    options);
}
