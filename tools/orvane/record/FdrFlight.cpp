#include "tools/orvane/record/FdrFlight.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <string_view>
#include <utility>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/DatarefReader.h"
#include "tools/orvane/datarefs/Numbers.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

constexpr const char* kMagneticHeading = "sim/flightmodel/position/mag_psi";
constexpr const char* kLocalDate = "sim/time/local_date_days"; // since 1 January
constexpr std::size_t kHeading = 3;
constexpr double kSecondsPerDay = 86'400;

// The protocol cannot read text.
constexpr const char* kAircraft = "Aircraft/unknown.acf";
constexpr const char* kTailNumber = "UNKNOWN";

constexpr double kStandardInHg = 29.92;
constexpr double kStandardC = 15;

void tellMissing(const char* dataref, const char* instead) {
    tell(fmt::format("{}: the simulator has no such dataref; {}", dataref, instead));
}

std::vector<double> numbersOf(std::span<const velmar::Value> values) {
    std::vector<double> numbers;
    for (const velmar::Value& value : values) {
        forEachNumber(value, [&](auto number) { numbers.push_back(number); });
    }
    return numbers;
}

double numberOf(const velmar::Value& value) {
    const std::vector<double> numbers = numbersOf({&value, 1});
    return numbers.empty() ? 0 : numbers.front();
}

std::optional<std::size_t> placeOf(std::string_view name,
                                   const std::vector<DatarefArgument>& datarefs) {
    const auto found = std::find_if(datarefs.begin(), datarefs.end(),
                                    [&](const auto& each) { return each.name == name; });
    return found == datarefs.end() ? std::nullopt : std::optional(found - datarefs.begin());
}

const char* commentFor(velmar::Type type) {
    switch (type) {
    case velmar::Type::Int:
    case velmar::Type::IntArray:
        return "int";
    case velmar::Type::Byte:
        return "byte";
    default:
        return "";
    }
}

void appendColumns(const DatarefArgument& dataref, std::vector<headless::FdrColumn>& columns) {
    const velmar::Type type = dataref.type.value_or(velmar::Type::Float);
    if (type != velmar::Type::IntArray && type != velmar::Type::FloatArray) {
        columns.push_back({dataref.name, commentFor(type)});
        return;
    }
    for (std::size_t place = 0; place < dataref.size; ++place) {
        columns.push_back({dataref.ElementName(place), commentFor(type)});
    }
}

// The simulator's year is not known, and never a leap year.
std::chrono::year_month_day dateAfter(const std::chrono::year_month_day& today, double dayOfYear) {
    using namespace std::chrono;
    constexpr double kLastDay = 364;
    const days after(static_cast<int>(std::clamp(dayOfYear, 0.0, kLastDay)));
    const year_month_day date(sys_days(year(2001) / January / 1) + after);
    return today.year() / date.month() / date.day();
}

struct StartField {
    const char* dataref;
    const char* type;
    const char* instead;
};

// In the order of StartNumbers.
constexpr std::array<StartField, 6> kStart{
    {{headless::kFdrZuluTime, "float", "the time is this machine's"},
     {kLocalDate, "int", "the date is today's"},
     {headless::kFdrPressureInHg, "float", "PRES is 29.92"},
     {headless::kFdrTemperatureC, "float", "TEMP is 59"},
     {headless::kFdrWindDegrees, "float", "the direction of WIND is 0"},
     {headless::kFdrWindKnots, "float", "the speed of WIND is 0"}}};

using StartNumbers = std::array<std::optional<double>, kStart.size()>;

StartNumbers startNumbers(velmar::Client& client) {
    std::vector<DatarefArgument> arguments;
    std::transform(kStart.begin(), kStart.end(), std::back_inserter(arguments),
                   [](const StartField& field) {
                       return parseDatarefArgument(fmt::format("{}:{}", field.dataref, field.type));
                   });
    DatarefReader reader(client, std::move(arguments));
    const std::vector<velmar::Value> values = reader.Read();
    StartNumbers numbers;
    for (std::size_t i = 0; i < kStart.size(); ++i) {
        if (const auto place = placeOf(kStart[i].dataref, reader.Known())) {
            const double number = numberOf(values[*place]);
            numbers[i] = std::isfinite(number) ? number : 0;
        } else {
            tellMissing(kStart[i].dataref, kStart[i].instead);
        }
    }
    return numbers;
}

} // namespace

std::vector<DatarefArgument> withPosition(std::vector<DatarefArgument> asked) {
    std::vector<const char*> names(headless::kFdrPose.begin(), headless::kFdrPose.end());
    names.push_back(kMagneticHeading);
    for (const char* const name : names) {
        const auto place = placeOf(name, asked);
        if (!place) {
            asked.push_back(parseDatarefArgument(fmt::format("{}:float", name)));
        } else if (asked[*place].type.value_or(velmar::Type::Float) != velmar::Type::Float) {
            // Read as another type it is 0, also in the row's own column.
            throw Failure(ExitCode::WrongUsage,
                          asked[*place].NameAndType() + ": a .fdr has it as float");
        }
    }
    shareArrays(asked);
    return asked;
}

FdrFlight::FdrFlight(velmar::Client& client, const std::vector<DatarefArgument>& known,
                     std::size_t asked)
    : asked(asked) {
    for (std::size_t i = 0; i < asked; ++i) {
        appendColumns(known[i], head.columns);
    }
    findPose(known);
    readStart(client);
}

void FdrFlight::findPose(const std::vector<DatarefArgument>& known) {
    for (std::size_t i = 0; i < pose.size(); ++i) {
        pose[i] = placeOf(headless::kFdrPose[i], known);
    }
    if (const auto magnetic = placeOf(kMagneticHeading, known)) {
        pose[kHeading] = magnetic;
    } else if (pose[kHeading]) {
        tellMissing(kMagneticHeading, "the heading is the true one");
    }
    for (std::size_t i = 0; i < pose.size(); ++i) {
        if (!pose[i]) {
            tellMissing(headless::kFdrPose[i], "0 is written");
        }
    }
}

void FdrFlight::readStart(velmar::Client& client) {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const auto midnight = floor<days>(now);
    const year_month_day today(midnight);
    const auto [zulu, date, pressure, temperature, direction, speed] = startNumbers(client);
    const double seconds = zulu.value_or(duration<double>(now - midnight).count());
    head.aircraft = kAircraft;
    head.tailNumber = kTailNumber;
    // Whole, so that each of the recording's seconds has the rows of one of the file's.
    head.zuluSeconds = std::floor(std::fmod(std::max(seconds, 0.0), kSecondsPerDay));
    head.date = date ? dateAfter(today, *date) : today;
    head.pressureInHg = pressure.value_or(kStandardInHg);
    head.temperatureC = temperature.value_or(kStandardC);
    head.windDegrees = direction.value_or(0);
    head.windKnots = speed.value_or(0);
}

std::string FdrFlight::Row(double seconds, std::span<const velmar::Value> values) {
    std::array<double, headless::kFdrPose.size()> place{};
    for (std::size_t i = 0; i < place.size(); ++i) {
        place[i] = pose[i] ? finite(numberOf(values[*pose[i]]), headless::kFdrPose[i]) : 0;
    }
    std::vector<double> numbers = numbersOf(values.first(asked));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = finite(numbers[i], head.columns[i].dataref);
    }
    return headless::fdrRow(head.zuluSeconds + seconds, place, numbers);
}

double FdrFlight::finite(double number, const std::string& column) {
    if (std::isfinite(number)) {
        return number;
    }
    if (notFinite.insert(column).second) {
        tell(fmt::format("{}: {} cannot be written to a .fdr; it is 0 there", column, number));
    }
    return 0;
}

} // namespace orvane::tool
