#include "tools/orvane/serve/Events.h"

#include <cmath>
#include <iterator>
#include <type_traits>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/datarefs/Numbers.h"
#include "tools/orvane/files/RecordWriter.h"

namespace orvane::tool {

namespace {

std::string eventText(const char* kind, const Record& record) {
    return fmt::format("event: {}\ndata: {}\n\n", kind, jsonText(record));
}

const char* nameOf(LiveState state) {
    switch (state) {
    case LiveState::Waiting:
        return "waiting";
    case LiveState::Connected:
        return "connected";
    case LiveState::Lost:
        return "lost";
    case LiveState::Aircraft:
        return "aircraft";
    case LiveState::Ended:
        break;
    }
    return "ended";
}

template <typename Number>
void appendNumber(std::string& text, std::size_t series, Number number) {
    if constexpr (std::is_floating_point_v<Number>) {
        if (!std::isfinite(number)) {
            fmt::format_to(std::back_inserter(text), ",{},null", series);
            return;
        }
    }
    fmt::format_to(std::back_inserter(text), ",{},{}", series, number);
}

void appendValue(std::string& text, const ShownDataref& shown, const velmar::Value& value) {
    std::size_t series = shown.firstSeries;
    forEachNumber(value, [&](auto number) {
        if (series < shown.firstSeries + shown.count) {
            appendNumber(text, series++, number);
        }
    });
}

std::string typeOfNumbers(const DatarefArgument& argument) {
    const velmar::Type type = argument.type.value_or(velmar::Type::Float);
    const bool isFloat = type == velmar::Type::Float || type == velmar::Type::FloatArray;
    return isFloat ? "float" : "int";
}

} // namespace

std::size_t countOf(const DatarefArgument& argument) {
    return argument.size > 0 ? argument.size : 1;
}

std::string seriesEvent(const std::vector<ShownDataref>& shown,
                        const std::vector<std::string>& missing) {
    Record series = Record::array();
    for (const ShownDataref& each : shown) {
        for (std::size_t i = 0; i < each.count; ++i) {
            const DatarefArgument& argument = each.argument;
            series.push_back({{"name", argument.size > 0 ? argument.ElementName(i) : argument.name},
                              {"argument", argument.text},
                              {"unit", argument.unit},
                              {"type", typeOfNumbers(argument)}});
        }
    }
    return eventText("series", {{"series", series}, {"missing", missing}});
}

std::string readingEvent(double seconds, const std::vector<ShownDataref>& shown,
                         const std::vector<velmar::Value>& values,
                         const std::vector<bool>& isChanged) {
    std::string text = fmt::format("data: [{:.3f}", seconds);
    for (const ShownDataref& each : shown) {
        if (isChanged[each.place]) {
            appendValue(text, each, values[each.place]);
        }
    }
    return text + "]\n\n";
}

std::string stateEvent(double seconds, LiveState state, const std::string& text) {
    return eventText(
        "state", {{"time", toThreeDecimals(seconds)}, {"state", nameOf(state)}, {"text", text}});
}

std::string commandEvent(double seconds, const CommandEvent& event) {
    return eventText("command", {{"time", toThreeDecimals(seconds)},
                                 {"command", event.command},
                                 {"event", nameOf(event.kind)}});
}

} // namespace orvane::tool
