#pragma once

#include <string>
#include <vector>

namespace headless {

// Times in a flight when no frames run for a while, as when scenery is loaded.
//
// "3s@10s" means 3 seconds of wall clock at flight second 10.
class Freezes final {
public:
    // Throws std::invalid_argument if a text cannot be parsed.
    explicit Freezes(const std::vector<std::string>& texts);

    // The total seconds of the freezes that are due now, or 0. Each freeze is returned once.
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
