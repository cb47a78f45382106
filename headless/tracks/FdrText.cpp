#include "headless/tracks/FdrText.h"

#include <charconv>
#include <cmath>

namespace headless {

namespace {

constexpr long kSecondsPerMinute = 60;
constexpr long kSecondsPerHour = 3'600;
constexpr long kSecondsPerDay = 86'400;
constexpr double kParts = 10'000.0; // of a foot

// Other readers may not know exponents, so usual numbers have none.
template <typename Number>
std::string shortestText(Number number) {
    constexpr double kSmallest = 1e-6;
    constexpr double kLargest = 1e12;
    const double size = std::abs(static_cast<double>(number));
    const bool isUsual = size == 0.0 || (size >= kSmallest && size < kLargest);
    std::array<char, 32> text{};
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), number,
                      isUsual ? std::chars_format::fixed : std::chars_format::scientific);
    return {text.data(), end};
}

// A float needs fewer digits than the double of the same value.
std::string numberText(double number) {
    const auto single = static_cast<float>(number);
    return static_cast<double>(single) == number ? shortestText(single) : shortestText(number);
}

std::string twoDigits(long number) {
    std::string text = std::to_string(number);
    return number < 10 ? text.insert(0, 1, '0') : text;
}

std::string timeText(double zuluSeconds) {
    const long seconds = static_cast<long>(zuluSeconds) % kSecondsPerDay;
    return twoDigits(seconds / kSecondsPerHour) + ":" +
           twoDigits(seconds % kSecondsPerHour / kSecondsPerMinute) + ":" +
           twoDigits(seconds % kSecondsPerMinute);
}

std::string dateText(const std::chrono::year_month_day& date) {
    return twoDigits(static_cast<unsigned>(date.month())) + "/" +
           twoDigits(static_cast<unsigned>(date.day())) + "/" +
           std::to_string(static_cast<int>(date.year()));
}

std::string columnLine(const FdrColumn& column) {
    return "DREF, " + column.dataref + "\t1.0" +
           (column.comment.empty() ? "" : "\t// " + column.comment);
}

double rounded(double number) {
    return std::round(number * kParts) / kParts;
}

} // namespace

std::vector<std::string> fdrHeadLines(const FdrHead& head) {
    constexpr double kFahrenheitPerCelsius = 1.8;
    constexpr double kFreezingF = 32.0;
    const double temperatureF = head.temperatureC * kFahrenheitPerCelsius + kFreezingF;
    std::vector<std::string> lines{
        "A",
        "4",
        "ACFT, " + head.aircraft,
        "TAIL, " + head.tailNumber,
        "TIME, " + timeText(head.zuluSeconds),
        "DATE, " + dateText(head.date),
        "PRES, " + numberText(head.pressureInHg),
        "TEMP, " + numberText(rounded(temperatureF)),
        "WIND, " + numberText(head.windDegrees) + ", " + numberText(head.windKnots)};
    for (const FdrColumn& column : head.columns) {
        lines.push_back(columnLine(column));
    }
    return lines;
}

std::string fdrRow(double zuluSeconds, const std::array<double, kFdrPose.size()>& pose,
                   std::span<const double> numbers) {
    std::string line = timeText(zuluSeconds);
    for (std::size_t i = 0; i < pose.size(); ++i) {
        line += ',';
        line += numberText(i == kFdrElevation ? rounded(pose[i] / kMetresPerFoot) : pose[i]);
    }
    for (const double number : numbers) {
        line += ',';
        line += numberText(number);
    }
    return line;
}

} // namespace headless
