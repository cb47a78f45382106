#include "tools/orvane/serve/ReplayReader.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/datarefs/DatarefPoller.h"

namespace orvane::tool {

namespace {

// A new page waits for no longer than this.
constexpr double kLongestStep = 0.05;

} // namespace

ReplayReader::ReplayReader(const Recording& recording, Hub& hub) : recording(recording), hub(hub) {}

void ReplayReader::Run() {
    hub.Tell(LiveState::Connected, "replay");
    std::optional<Pace> pace; // since the first row
    std::size_t row = 0;
    Pace steps(kLongestStep);
    do {
        if (hub.Generation() != generation) {
            takeUnion();
        }
        if (!pace && !hub.All().datarefs.empty()) {
            pace.emplace(0);
        }
        const double begin = recording.rows.front().seconds;
        while (pace && row < recording.rows.size() &&
               recording.rows[row].seconds - begin <= pace->Elapsed()) {
            show(row++);
        }
        if (row == recording.rows.size() && shown) {
            hub.Tell(LiveState::Ended, "the recording is over");
            ++row;
        }
    } while (steps.WaitForNext(kSecondsPerYear));
}

void ReplayReader::takeUnion() {
    const Hub::Union all = hub.All();
    std::vector<std::string> missing = all.commands;
    for (const DatarefArgument& wanted : all.datarefs) {
        const bool isRecorded =
            std::any_of(recording.datarefs.begin(), recording.datarefs.end(),
                        [&](const DatarefArgument& each) { return each.name == wanted.name; });
        if (!isRecorded) {
            missing.push_back(wanted.name);
        }
    }
    generation = all.generation;
    hub.SetDatarefs(recording.datarefs, missing);
    if (shown) {
        show(*shown);
    }
}

void ReplayReader::show(std::size_t row) {
    const std::vector<velmar::Value> none;
    hub.Show(
        recording.rows[row].values,
        changesBetween(shown ? recording.rows[*shown].values : none, recording.rows[row].values));
    shown = row;
}

} // namespace orvane::tool
