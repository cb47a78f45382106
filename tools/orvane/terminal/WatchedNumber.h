#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>

namespace orvane::tool {

// What is remembered of a number that is looked at again and again.
class WatchedNumber final {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::size_t kHistory = 20;
    // A change is to be noticed, also where only some of the readings are shown.
    static constexpr std::chrono::milliseconds kChangeLasts{500};

    WatchedNumber() = default;
    // What comes sooner after the number before takes its place in the history.
    explicit WatchedNumber(std::chrono::milliseconds historyInterval)
        : historyInterval(historyInterval) {}

    // `shownAs` is how the number is shown.
    void See(double number, const std::string& shownAs, TimePoint now);

    const std::string& Text() const { return text; }
    // Whether it was another one shortly before. The first is no change.
    bool HasChanged() const { return hasChanged; }
    // The texts of the least and the greatest that were seen.
    const std::string& Minimum() const { return minimum.text; }
    const std::string& Maximum() const { return maximum.text; }
    // The latest ones, oldest first.
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
