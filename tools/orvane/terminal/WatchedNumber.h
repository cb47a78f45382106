#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>

namespace orvane::tool {

// The history of a number that is read again and again.
class WatchedNumber final {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::size_t kHistory = 20;
    // A change must be noticed even if only some of the readings are shown.
    static constexpr std::chrono::milliseconds kChangeLasts{500};

    WatchedNumber() = default;
    // A number that comes sooner than this replaces the one before in the history.
    explicit WatchedNumber(std::chrono::milliseconds historyInterval)
        : historyInterval(historyInterval) {}

    void See(double number, const std::string& shownAs, TimePoint now);

    const std::string& Text() const { return text; }
    // Whether it changed a short while ago. The first number is not a change.
    bool HasChanged() const { return hasChanged; }
    // The texts of the least and the greatest number so far.
    const std::string& Minimum() const { return minimum.text; }
    const std::string& Maximum() const { return maximum.text; }
    // The latest numbers, oldest first.
    const std::deque<double>& History() const { return history; }

private:
    struct Extreme {
        double number = 0.0;
        std::string text;
    };

    void remember(double number, TimePoint now);

    std::chrono::milliseconds historyInterval{};
    std::string text;
    bool hasChanged = false;
    std::optional<TimePoint> changedAt;
    Extreme minimum;
    Extreme maximum;
    std::deque<double> history;
    TimePoint rememberedAt;
};

} // namespace orvane::tool
