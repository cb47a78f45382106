#include "headless/xplm/navigation/FlightPlan.h"

#include <algorithm>
#include <sstream>

namespace headless {

namespace {

// The types of the text format.
struct FileType {
    int number;
    XPLMNavType type;
};

constexpr std::array<FileType, 5> kFileTypes{{{1, xplm_Nav_Airport},
                                              {2, xplm_Nav_NDB},
                                              {3, xplm_Nav_VOR},
                                              {11, xplm_Nav_Fix},
                                              {28, xplm_Nav_LatLon}}};

bool isEmpty(const FlightPlanEntry& entry) {
    return entry.type == xplm_Nav_Unknown;
}

bool readEntry(const std::string& line, FlightPlanEntry& entry) {
    std::istringstream columns(line);
    int number = 0;
    std::string via;
    double altitude = 0.0;
    if (!(columns >> number >> entry.id >> via >> altitude >> entry.latitude >> entry.longitude)) {
        return false;
    }
    entry.altitude = static_cast<int>(altitude);
    const auto known = std::find_if(kFileTypes.begin(), kFileTypes.end(),
                                    [&](const FileType& one) { return one.number == number; });
    entry.type =
        known == kFileTypes.end() ? static_cast<XPLMNavType>(xplm_Nav_LatLon) : known->type;
    return true;
}

} // namespace

FlightPlanEntry FlightPlan::At(int index) const {
    return index >= 0 && index < Count() ? entries[static_cast<std::size_t>(index)]
                                         : FlightPlanEntry{};
}

void FlightPlan::Set(int index, const FlightPlanEntry& entry) {
    if (index < 0 || index >= kMost) {
        return;
    }
    if (index >= Count()) {
        entries.resize(static_cast<std::size_t>(index) + 1);
    }
    entries[static_cast<std::size_t>(index)] = entry;
}

void FlightPlan::Clear(int index) {
    if (index >= 0 && index < Count()) {
        entries[static_cast<std::size_t>(index)] = {};
    }
    while (!entries.empty() && isEmpty(entries.back())) {
        entries.pop_back();
    }
}

void FlightPlan::Load(std::string_view text) {
    entries.clear();
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line) && Count() < kMost;) {
        FlightPlanEntry entry;
        if (readEntry(line, entry)) {
            entries.push_back(entry);
        }
    }
}

std::string FlightPlan::Save() const {
    std::ostringstream text;
    text << "I\n1100 Version\nCYCLE 0000\nNUMENR " << entries.size() << '\n';
    text.precision(6);
    text << std::fixed;
    for (const FlightPlanEntry& entry : entries) {
        const auto known =
            std::find_if(kFileTypes.begin(), kFileTypes.end(),
                         [&](const FileType& one) { return one.type == entry.type; });
        text << (known == kFileTypes.end() ? 28 : known->number) << ' '
             << (entry.id.empty() ? "----" : entry.id) << " DRCT "
             << static_cast<double>(entry.altitude) << ' ' << static_cast<double>(entry.latitude)
             << ' ' << static_cast<double>(entry.longitude) << '\n';
    }
    return text.str();
}

} // namespace headless
