#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace headless {

// Counts frames and measures the plugin time in them.
class FrameStatistics final {
public:
    void Add(std::chrono::nanoseconds pluginTime);

    std::int64_t Frames() const { return frames; }
    std::chrono::nanoseconds Worst() const { return worst; }
    // Zero before the first frame.
    std::chrono::nanoseconds Mean() const;

    // "frames N, plugin time per frame: worst N.N us, mean N.N us".
    std::string Summary() const;

private:
    std::int64_t frames = 0;
    std::chrono::nanoseconds worst{0};
    std::chrono::nanoseconds total{0};
};

} // namespace headless
