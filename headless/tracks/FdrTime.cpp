#include "headless/tracks/FdrTime.h"

#include <algorithm>
#include <stdexcept>

#include "headless/tracks/TrackText.h"

namespace headless {

namespace {

constexpr double kDay = 86'400.0;
constexpr double kHour = 3'600.0;
constexpr double kMinute = 60.0;

} // namespace

TimeOfDay timeOfDayIn(const std::string& text) {
    const std::size_t first = text.find(':');
    if (first == std::string::npos) {
        throw std::invalid_argument("\"" + text + "\" is not a time such as 12:30:00");
    }
    const std::size_t second = text.find(':', first + 1);
    const bool hasSeconds = second != std::string::npos;
    const double hours = finiteNumberIn(text.substr(0, first));
    const double minutes = finiteNumberIn(text.substr(first + 1, second - first - 1));
    const double seconds = hasSeconds ? finiteNumberIn(text.substr(second + 1)) : 0.0;
    const bool isTime =
        hours >= 0 && hours <= 24 && minutes >= 0 && minutes < 60 && seconds >= 0 && seconds <= 60;
    if (!isTime) {
        throw std::invalid_argument("\"" + text + "\" is not a time of day");
    }
    return {hours * kHour + minutes * kMinute + seconds, hasSeconds};
}

double secondsAfter(const std::vector<TrackRow>& rows, double secondsOfDay) {
    double seconds = secondsOfDay;
    const double before = rows.empty() ? 0.0 : rows.back().seconds;
    while (seconds < before - kDay / 2) {
        seconds += kDay;
    }
    if (seconds < before) {
        throw std::invalid_argument("the row is earlier than the one before");
    }
    return seconds;
}

void spreadRows(std::vector<TrackRow>& rows, double resolution) {
    for (auto begin = rows.begin(); begin != rows.end();) {
        const double time = begin->seconds;
        const auto end = std::find_if(begin, rows.end(),
                                      [&](const TrackRow& row) { return row.seconds != time; });
        const double length =
            end == rows.end() ? resolution : std::min(end->seconds - time, resolution);
        const auto count = static_cast<double>(end - begin);
        for (double place = 0; begin != end; ++begin, ++place) {
            begin->seconds += length * place / count;
        }
    }
}

} // namespace headless
