#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "headless/tracks/FdrText.h"
#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/DatarefArgument.h"

namespace orvane::tool {

// These, and the position and attitude of the aircraft, which every row of a .fdr has. Failure:
// they name elements of one of those, or one as another type than float.
std::vector<DatarefArgument> withPosition(std::vector<DatarefArgument> asked);

// The text of a flight data recorder: what the simulator says at the start, then rows. What it
// lacks is named, with what is written instead.
class FdrFlight final {
public:
    // Reads the time, the date and the weather. `known` is what the simulator has of
    // withPosition(); the first `asked` of them become columns, each element of an array its own.
    FdrFlight(velmar::Client& client, const std::vector<DatarefArgument>& known, std::size_t asked);

    // The lines before the rows.
    std::vector<std::string> Head() const { return headless::fdrHeadLines(head); }
    // The time is since the start, the values are those of `known`. The format has no NaN and no
    // infinity: 0 stands for them, and their columns are named once.
    std::string Row(double seconds, std::span<const velmar::Value> values);

private:
    void findPose(const std::vector<DatarefArgument>& known);
    void readStart(velmar::Client& client);
    double finite(double number, const std::string& column);

    headless::FdrHead head;
    const std::size_t asked;
    // Where the numbers of a row are among the values; none if the simulator lacks one.
    std::array<std::optional<std::size_t>, headless::kFdrPose.size()> pose;
    std::set<std::string> notFinite;
};

} // namespace orvane::tool
