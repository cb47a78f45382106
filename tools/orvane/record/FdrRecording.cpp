#include "tools/orvane/record/FdrRecording.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <string>

#include <fmt/core.h>

#include "headless/tracks/FdrDatarefs.h"
#include "tools/orvane/cli/Failure.h"

namespace orvane::tool {

namespace {

// The time of each row, which is not written back.
constexpr std::size_t kTimeColumn = headless::kFdrPose.size();

template <typename Number>
Number limited(double number) {
    return static_cast<Number>(
        std::clamp(number, static_cast<double>(std::numeric_limits<Number>::lowest()),
                   static_cast<double>(std::numeric_limits<Number>::max())));
}

velmar::Value valueOf(double number, velmar::Type type) {
    switch (type) {
    case velmar::Type::Int:
        return limited<std::int32_t>(std::round(number));
    case velmar::Type::Byte:
        return limited<std::uint8_t>(std::round(number));
    default:
        return limited<float>(number);
    }
}

// The places of the columns that count.
std::vector<std::size_t> placesIn(const std::vector<headless::TrackColumn>& columns) {
    std::set<std::string> names;
    std::vector<std::size_t> places;
    for (std::size_t place = columns.size(); place-- > 0;) {
        if (place != kTimeColumn && names.insert(columns[place].name).second) {
            places.push_back(place);
        }
    }
    std::reverse(places.begin(), places.end());
    return places;
}

DatarefArgument argumentFor(const headless::TrackColumn& column) {
    const bool hasType = column.comment == "int" || column.comment == "byte";
    return parseDatarefArgument(
        fmt::format("{}:{}", column.name, hasType ? column.comment : "float"));
}

} // namespace

Recording fdrRecording(const headless::Track& track, Problems& problems) {
    Recording recording;
    recording.hasSettings = !track.aircraft.empty() || !track.settings.empty();
    std::size_t line = 1;
    const std::vector<std::size_t> places = placesIn(track.columns);
    try {
        for (const std::size_t place : places) {
            line = static_cast<std::size_t>(std::max(track.columns[place].line, 1));
            recording.datarefs.push_back(argumentFor(track.columns[place]));
        }
        shareArrays(recording.datarefs);
    } catch (const Failure& failure) {
        problems.push_back({line, 0, failure.what()});
        return recording;
    }
    for (const headless::TrackRow& row : track.rows) {
        RecordedRow recorded{row.seconds, {}};
        for (std::size_t i = 0; i < places.size(); ++i) {
            recorded.values.push_back(valueOf(row.numbers[places[i]], *recording.datarefs[i].type));
        }
        recording.rows.push_back(std::move(recorded));
    }
    return recording;
}

} // namespace orvane::tool
