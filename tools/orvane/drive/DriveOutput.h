#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "orvane/tarnel/Answer.h"
#include "orvane/tarnel/Client.h"
#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/drive/DriveTable.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/files/LineFile.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/terminal/LiveScreen.h"
#include "tools/orvane/terminal/StatusLine.h"
#include "tools/orvane/terminal/Terminal.h"

namespace orvane::tool {

// How a session is to be shown.
struct DriveView {
    Format format = Format::Text;
    std::string file; // empty: standard output
    LineFile::Existing existing = LineFile::Existing::Keep;
    bool isPlain = false; // lines on a terminal as well
    bool hasSummary = false;
    // For the title of the table: where the server is, and when the session ends.
    std::string place;
    std::optional<double> seconds;
};

struct Exchange {
    double seconds = 0; // since the start
    double roundTripMs = 0;
    std::span<const tarnel::Item> items;
    const tarnel::Answer& answer;
};

// Where the outputs of a session go: to standard output, a line or a record for each exchange, or
// to a file. On a terminal a table shows them, and the inputs. Borrows the profile.
class DriveOutput final {
public:
    DriveOutput(const Profile& profile, DriveView view);

    // Before the first exchange: makes the file.
    void Begin();
    void Show(const Exchange& exchange);
    // After the last exchange: leaves the last values on a terminal, tells what is in a file and,
    // if it is wanted, what the session was like.
    void Finish();

private:
    Record recordOf(const Exchange& exchange) const;
    std::string textOf(const Record& record) const;
    void writeToFile(const Exchange& exchange);
    void showLive(const Exchange& exchange);
    std::string summary() const;

    const Profile& profile;
    const DriveView view;
    const Format format;
    const std::vector<std::string> columns;
    const Terminal terminal;
    RecordWriter writer;
    std::optional<LineFile> file;
    StatusLine status;
    // Where there is a terminal to show it on.
    std::optional<LiveScreen> screen;
    std::optional<DriveTable> table;
    std::string title;
    std::size_t shown = 0;
    double seconds = 0;
    std::uint32_t aircraft = 0;
    std::vector<double> roundTripsMs;
};

} // namespace orvane::tool
