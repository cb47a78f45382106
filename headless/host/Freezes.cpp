#include "headless/host/Freezes.h"

#include <optional>
#include <stdexcept>
#include <string_view>

#include "headless/lists/ParsedNumber.h"

namespace headless {

namespace {

// "3s" or "0.5s".
std::optional<double> secondsOf(std::string_view text) {
    if (!text.ends_with('s')) {
        return std::nullopt;
    }
    text.remove_suffix(1);
    const auto seconds = parsedNumber<double>(text);
    return seconds >= 0.0 && seconds <= 1e6 ? seconds : std::nullopt;
}

} // namespace

Freezes::Freezes(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        pending.push_back(parse(text));
    }
}

double Freezes::TakeDue(double flightSeconds) {
    double due = 0.0;
    std::erase_if(pending, [&](const Freeze& freeze) {
        const bool now = flightSeconds >= freeze.at;
        due += now ? freeze.seconds : 0.0;
        return now;
    });
    return due;
}

Freezes::Freeze Freezes::parse(const std::string& text) {
    const std::string_view all = text;
    const std::size_t separator = all.find('@');
    if (separator != std::string_view::npos) {
        const auto seconds = secondsOf(all.substr(0, separator));
        const auto at = secondsOf(all.substr(separator + 1));
        if (seconds.has_value() && at.has_value()) {
            return {*seconds, *at};
        }
    }
    throw std::invalid_argument("--freeze " + text +
                                ": not a length and a time in the flight, as in 3s@10s");
}

} // namespace headless
