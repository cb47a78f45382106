#include "tools/orvane/dump/MessageText.h"

#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

#include <ctime>

namespace orvane::tool::dump {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::int64_t kNsPerSecond = 1'000'000'000;
constexpr std::int64_t kNsPerMicrosecond = 1000;
constexpr double kMicrosecondsPerSecond = 1e6;
constexpr double kMicrosecondsPerMillisecond = 1e3;

// "2026-03-05T09:07:02.000123Z"
std::string utcText(std::int64_t timeNs) {
    std::int64_t seconds = timeNs / kNsPerSecond;
    std::int64_t rest = timeNs % kNsPerSecond;
    if (rest < 0) {
        rest += kNsPerSecond;
        --seconds;
    }
    const auto time = static_cast<std::time_t>(seconds);
    std::tm utc{};
    if (::gmtime_r(&time, &utc) == nullptr) {
        return fmt::format("{}s", seconds);
    }
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:06}Z", utc.tm_year + 1900,
                       utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
                       rest / kNsPerMicrosecond);
}

double seconds(std::int64_t ns) {
    const std::int64_t microseconds = ns / kNsPerMicrosecond;
    return static_cast<double>(microseconds) / kMicrosecondsPerSecond;
}

std::string timeText(std::int64_t timeNs, const TimeStyle& style) {
    return style.isAbsolute ? utcText(timeNs)
                            : fmt::format("{:10.6f}", seconds(timeNs - style.originNs));
}

std::string responseText(const Message& message) {
    if (!message.responseNs) {
        return {};
    }
    // Captures count in microseconds; what is below is of no account.
    const auto microseconds = *message.responseNs / kNsPerMicrosecond;
    return fmt::format(" ({:.3f} ms)",
                       static_cast<double>(microseconds) / kMicrosecondsPerMillisecond);
}

std::string markText(const Mark& mark) {
    return fmt::format("{}: {}", markWord(mark.kind), mark.text);
}

} // namespace

std::string messageAsText(const Message& message, const TimeStyle& style) {
    const char arrow = message.direction == Direction::ToPlugin ? '>' : '<';
    std::string line =
        fmt::format("{} {} {} {} {}{}", timeText(message.timeNs, style), toString(message.client),
                    arrow, message.protocol, message.kind, responseText(message));
    if (!message.text.empty()) {
        line += ": " + message.text;
    }
    for (const Mark& mark : message.marks) {
        line += fmt::format(" [{}]", printable(markText(mark)));
    }
    return line + '\n';
}

Json messageAsRecord(const Message& message, const TimeStyle& style) {
    Json object;
    if (style.isAbsolute) {
        object["time"] = utcText(message.timeNs);
    } else {
        object["time"] = seconds(message.timeNs - style.originNs);
    }
    object["client"] = toString(message.client);
    object["direction"] = message.direction == Direction::ToPlugin ? "to plugin" : "from plugin";
    object["protocol"] = message.protocol;
    object["message"] = message.kind;
    if (message.responseNs) {
        object["response_seconds"] = seconds(*message.responseNs);
    }
    object["text"] = message.text;
    if (!message.values.empty()) {
        object["values"] = message.values;
    }
    if (!message.marks.empty()) {
        Json& marks = object["marks"] = Json::array();
        for (const Mark& mark : message.marks) {
            marks.push_back(markText(mark));
        }
    }
    return object;
}

std::vector<std::string> messageColumns() {
    return {"time",    "client",           "direction", "protocol",
            "message", "response_seconds", "text",      "marks"};
}

} // namespace orvane::tool::dump
