#include "tools/orvane/drive/DriveInput.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/drive/TableSource.h"
#include "tools/orvane/files/InputLines.h"

namespace orvane::tool {

namespace {

using Motions = std::vector<std::pair<tarnel::ActionId, Motion>>;

// The inputs that the profile moves.
Motions motionsOf(const Profile& profile) {
    Motions motions;
    for (const ProfileInput& input : profile.inputs) {
        if (input.motion) {
            motions.emplace_back(input.action, *input.motion);
        }
    }
    return motions;
}

// All axes of the profile. Switches and commands do not move.
Motions motionsOf(const Profile& profile, const Wave& wave) {
    Motions motions;
    for (const ProfileInput& input : profile.inputs) {
        if (input.isAxis) {
            motions.emplace_back(input.action, wave);
        }
    }
    return motions;
}

// Moves inputs by the clock. Never ends.
InputSource moving(Motions motions) {
    return [motions = std::move(motions)](double seconds) {
        InputRow row;
        for (const auto& [action, motion] : motions) {
            row.items.push_back({action, valueAt(motion, seconds)});
        }
        return row;
    };
}

InputSource readTable(const std::string& file, const Profile& profile, Problems& problems) {
    InputLines lines(file);
    TableSource table(lines, profile, problems);
    std::vector<InputRow> rows;
    while (std::optional<InputRow> row = table.Next()) {
        rows.push_back(std::move(*row));
    }
    return [rows = std::move(rows), next = std::size_t{0}](double /*seconds*/) mutable {
        return next < rows.size() ? std::optional(rows[next++]) : std::nullopt;
    };
}

// Fails at the first wrong row, since later ones may depend on it.
class StandardInput final {
public:
    explicit StandardInput(const Profile& profile) : table(lines, profile, problems) { check(); }

    std::optional<InputRow> Next() {
        std::optional<InputRow> row = table.Next();
        check();
        return row;
    }

private:
    void check() const {
        if (!problems.empty()) {
            throw Failure(ExitCode::WrongUsage, problemText("standard input", problems.front()));
        }
    }

    InputLines lines{"-"};
    Problems problems;
    TableSource table;
};

} // namespace

InputSource openDriveInput(const std::string& input, const Profile& profile, const Wave& settings,
                           Problems& problems) {
    if (input.empty()) {
        return moving(motionsOf(profile));
    }
    if (input == "-") {
        return [rows = std::make_shared<StandardInput>(profile)](double /*seconds*/) {
            return rows->Next();
        };
    }
    if (const std::optional<Waveform> waveform = waveformNamed(input)) {
        Wave chosen = settings;
        chosen.waveform = *waveform;
        return moving(motionsOf(profile, chosen));
    }
    return readTable(input, profile, problems);
}

} // namespace orvane::tool
