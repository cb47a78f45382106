#include "headless/recording/Recorder.h"

#include <cerrno>
#include <cstring>
#include <ios>
#include <stdexcept>

namespace headless {

namespace {

constexpr int kDecimals = 6;

} // namespace

Recorder::Recorder(Simulator& recordedSimulator, const std::string& path,
                   const std::vector<std::string>& names)
    : simulator(recordedSimulator), fileName(path) {
    for (const std::string& name : names) {
        places.emplace_back(simulator.Datarefs(), name);
        if (places.back().IsText()) {
            throw std::invalid_argument(name + ": text cannot be recorded");
        }
    }
    file.open(path);
    file << std::fixed;
    file.precision(kDecimals);
    writeHeader();
}

void Recorder::writeHeader() {
    file << "time";
    for (const DatarefPlace& place : places) {
        file << ',' << place.Name() << ':' << place.TypeText();
    }
    file << '\n' << std::flush;
    requireWritten();
}

void Recorder::AfterFrame() {
    const double now = simulator.Clock().Now();
    begin = begin < 0.0 ? now : begin;
    file << now - begin;
    for (const DatarefPlace& place : places) {
        const std::string text = place.Format();
        const char* const quote = text.find(',') == std::string::npos ? "" : "\"";
        file << ',' << quote << text << quote;
    }
    file << '\n' << std::flush;
    requireWritten();
}

void Recorder::requireWritten() {
    if (!file) {
        throw std::runtime_error(fileName + ": cannot be written: " + std::strerror(errno));
    }
}

} // namespace headless
