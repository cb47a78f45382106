#include "tools/orvane/drive/DriveInput.h"

#include <optional>
#include <utility>
#include <vector>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/drive/MotionSource.h"
#include "tools/orvane/drive/PreparedRows.h"
#include "tools/orvane/drive/TableSource.h"
#include "tools/orvane/files/InputLines.h"

namespace orvane::tool {

namespace {

std::unique_ptr<IInputSource> readTable(const std::string& file, const Profile& profile,
                                        Problems& problems) {
    InputLines lines(file);
    TableSource table(lines, profile, problems);
    std::vector<InputRow> rows;
    while (std::optional<InputRow> row = table.Next(0)) {
        rows.push_back(std::move(*row));
    }
    return std::make_unique<PreparedRows>(std::move(rows));
}

// Fails at the first wrong row, since later ones may depend on it.
class StandardInput final : public IInputSource {
public:
    explicit StandardInput(const Profile& profile) : table(lines, profile, problems) { check(); }

    std::optional<InputRow> Next(double seconds) override {
        std::optional<InputRow> row = table.Next(seconds);
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

std::unique_ptr<IInputSource> openDriveInput(const std::string& input, const Profile& profile,
                                             const Wave& settings, Problems& problems) {
    if (input.empty()) {
        return std::make_unique<MotionSource>(profile);
    }
    if (input == "-") {
        return std::make_unique<StandardInput>(profile);
    }
    if (const std::optional<Waveform> waveform = waveformNamed(input)) {
        Wave chosen = settings;
        chosen.waveform = *waveform;
        return std::make_unique<MotionSource>(profile, chosen);
    }
    return readTable(input, profile, problems);
}

} // namespace orvane::tool
