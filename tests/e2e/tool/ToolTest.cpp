#include "e2e/tool/ToolTest.h"

void ToolTest::fly(const std::string& framesPerSecond) {
    simulator.reset();
    simulator = std::make_unique<SimulatorProcess>(std::vector<std::string>{
        "--datarefs", "DataRefs.txt", "--commands", "Commands.txt", "--hz", framesPerSecond});
    loadAircraft("Test aircraft one");
    simulator->Ask("run");
}
