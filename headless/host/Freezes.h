#pragma once

#include <string>
#include <vector>

namespace headless {

// Times in a flight at which there are no frames for a while, as when scenery is loaded.
//
// One is "3s@10s": for 3 seconds of wall clock at flight second 10.
class Freezes final {
public:
    // Throws std::invalid_argument for a text that cannot be read.
    explicit Freezes(const std::vector<std::string>& texts);

    // The seconds of those that are due, each once; 0 for none.
    double TakeDue(double flightSeconds);

private:
    struct Freeze {
        double seconds;
        double at;
    };

    static Freeze parse(const std::string& text);

    std::vector<Freeze> pending;
};

} // namespace headless
