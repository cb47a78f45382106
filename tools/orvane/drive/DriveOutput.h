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
#include "tools/orvane/cli/OutputOption.h"
#include "tools/orvane/drive/DriveTable.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/files/LineFile.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/terminal/LiveScreen.h"
#include "tools/orvane/terminal/StatusLine.h"
#include "tools/orvane/terminal/Terminal.h"

namespace orvane::tool {

// How to show a session.
struct DriveView {
    Format format = Format::Text;
    OutputOption output;  // without a path: standard output
    bool isPlain = false; // lines even on a terminal
    bool hasSummary = false;
    // For the title of the table: the server's port, and when the session ends.
    std::uint16_t port = 0;
    std::optional<double> seconds;
};

struct Exchange {
    const std::string& host;
    double seconds = 0; // since the start
    double roundTripMs = 0;
    std::span<const tarnel::Item> items;
    const tarnel::Answer& answer;
};

// Writes the outputs of a session to standard output or to a file, a line or record per exchange.
// On a terminal it shows inputs and outputs in a table. Borrows the profile.
class DriveOutput final {
public:
    DriveOutput(const Profile& profile, const DriveView& view);

    // Called before the first exchange: creates the file.
    void Begin();
    void Show(const Exchange& exchange);
    // Called after the last exchange: leaves the last values on a terminal, reports the size of the
    // file and, on request, prints a summary.
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
    // Only on a terminal.
    std::optional<LiveScreen> screen;
    std::optional<DriveTable> table;
    std::string title;
    std::size_t shown = 0;
    double seconds = 0;
    std::uint32_t aircraft = 0;
    std::vector<double> roundTripsMs;
};

} // namespace orvane::tool
