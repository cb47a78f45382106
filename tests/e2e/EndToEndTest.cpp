#include "e2e/EndToEndTest.h"

namespace {

constexpr const char* kDatarefs =
    "test/int\tint\ty\tunits\tAn int\n"
    "test/float\tfloat\ty\tunits\tA float\n"
    "test/ints\tint[8]\ty\tunits\tEight ints\n"
    "test/floats\tfloat[8]\ty\tunits\tEight floats\n"
    "test/many_floats\tfloat[500000]\ty\tunits\tA large array\n"
    "test/minimum\tfloat\ty\tunits\tThe lower end of a range\n"
    "test/maximum\tfloat\ty\tunits\tThe upper end of a range\n";

constexpr const char* kCommands =
    "test/once\tA command to run\n"
    "test/hold\tA command to hold\n";

} // namespace

EndToEndTest::EndToEndTest() {
    directory.MakePluginsFolder();
    directory.Write("DataRefs.txt", kDatarefs);
    directory.Write("Commands.txt", kCommands);
}

void EndToEndTest::startSimulator() {
    simulator.reset();
    simulator = std::make_unique<SimulatorProcess>(
        std::vector<std::string>{"--datarefs", "DataRefs.txt", "--commands", "Commands.txt"});
    loadAircraft("Test aircraft one");
}

void EndToEndTest::loadAircraft(const std::string& description) {
    const std::string reply = simulator->Ask("aircraft load " + description);
    ASSERT_TRUE(reply.starts_with("ok")) << reply;
}

Bytes trailer(const char* aircraftId) {
    return join({fromHex("FF FF 00 00 04 00 00 00"), fromHex(aircraftId)});
}
