#include "tools/orvane/terminal/WatchedNumber.h"

namespace orvane::tool {

void WatchedNumber::See(double number, const std::string& shownAs, TimePoint now) {
    if (!history.empty() && number != history.back()) {
        changedAt = now;
    }
    hasChanged = changedAt && now - *changedAt < kChangeLasts;
    text = shownAs;
    if (minimum.text.empty() || number < minimum.number) {
        minimum = {number, text};
    }
    if (maximum.text.empty() || number > maximum.number) {
        maximum = {number, text};
    }
    remember(number, now);
}

void WatchedNumber::remember(double number, TimePoint now) {
    if (!history.empty() && now - rememberedAt < historyInterval) {
        history.back() = number;
        return;
    }
    rememberedAt = now;
    history.push_back(number);
    if (history.size() > kHistory) {
        history.pop_front();
    }
}

} // namespace orvane::tool
