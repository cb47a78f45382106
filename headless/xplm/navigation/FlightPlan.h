#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "XPLMNavigation.h"

namespace headless {

struct FlightPlanEntry {
    XPLMNavType type = xplm_Nav_Unknown;
    std::string id;
    XPLMNavRef reference = XPLM_NAV_NOT_FOUND;
    // Feet.
    int altitude = 0;
    float latitude = 0.0F;
    float longitude = 0.0F;
};

// The entries of an FMS, at most kMost, with the displayed entry and the destination entry.
class FlightPlan final {
public:
    static constexpr int kMost = 100;

    int Count() const { return static_cast<int>(entries.size()); }
    // Empty for an index that does not exist.
    FlightPlanEntry At(int index) const;
    // An index past the end makes the plan longer; one outside 0 to kMost - 1 is ignored.
    void Set(int index, const FlightPlanEntry& entry);
    // Makes the entry empty and removes empty entries at the end.
    void Clear(int index);

    int Displayed() const { return displayed; }
    int Destination() const { return destination; }
    void SetDisplayed(int index) { displayed = index; }
    void SetDestination(int index) { destination = index; }

    // The simulator's text format, version 1100. Lines that are not entries are skipped.
    void Load(std::string_view text);
    std::string Save() const;

private:
    std::vector<FlightPlanEntry> entries;
    int displayed = 0;
    int destination = 0;
};

// By the numbers of XPLMNavFlightPlan; other numbers mean the pilot's primary plan.
class FlightPlans final {
public:
    static constexpr std::size_t kCount = 6;

    FlightPlan& Of(XPLMNavFlightPlan plan) {
        const bool known = plan >= 0 && plan < static_cast<int>(kCount);
        return plans[static_cast<std::size_t>(known ? plan : xplm_Fpl_Pilot_Primary)];
    }

private:
    std::array<FlightPlan, kCount> plans;
};

} // namespace headless
