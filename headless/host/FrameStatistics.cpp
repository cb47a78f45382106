#include "headless/host/FrameStatistics.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace headless {

namespace {

double microseconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

} // namespace

void FrameStatistics::Add(std::chrono::nanoseconds pluginTime) {
    ++frames;
    worst = std::max(worst, pluginTime);
    total += pluginTime;
}

std::chrono::nanoseconds FrameStatistics::Mean() const {
    return frames == 0 ? std::chrono::nanoseconds(0) : total / frames;
}

std::string FrameStatistics::Summary() const {
    std::ostringstream text;
    text << "frames " << frames << ", plugin time per frame: worst " << std::fixed
         << std::setprecision(1) << microseconds(worst) << " us, mean " << microseconds(Mean())
         << " us";
    return text.str();
}

} // namespace headless
