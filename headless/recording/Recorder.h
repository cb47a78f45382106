#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "headless/host/DatarefPlace.h"
#include "headless/host/IFrameListener.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Writes the values of datarefs to a file after each frame, as comma-separated values that a replay
// can read. Each row is written at once and as a whole.
class Recorder final : public IFrameListener {
public:
    // Empties or creates the file and writes the header. Throws std::invalid_argument for a dataref
    // that does not exist or is text, and std::runtime_error if the file cannot be written. Borrows
    // the simulator.
    Recorder(Simulator& recordedSimulator, const std::string& path,
             const std::vector<std::string>& names);

    void BeforeFrame(double /*seconds*/) override {}
    // Throws std::runtime_error if the file can no longer be written.
    void AfterFrame() override;

private:
    void writeHeader();
    void requireWritten();

    Simulator& simulator;
    std::string fileName;
    std::vector<DatarefPlace> places;
    std::ofstream file;
    // The time of the first row.
    double begin = -1.0;
};

} // namespace headless
