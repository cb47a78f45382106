#pragma once

#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/files/LineFile.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/terminal/StatusLine.h"

#include <optional>
#include <string>
#include <vector>

#include "orvane/tarnel/Answer.h"

namespace orvane::tool {

// Where the outputs of a session go: to standard output, a line or a record for each exchange, or
// to a file. On a terminal one line that is redrawn shows them instead. Borrows the profile.
class DriveOutput final {
public:
    // An empty path stands for standard output.
    DriveOutput(const Profile& profile, Format format, const std::string& path,
                LineFile::Existing existing);

    // Before the first exchange: makes the file.
    void Begin();
    void Show(double seconds, const tarnel::Answer& answer);
    // After the last exchange: leaves the last values on a terminal, tells what is in a file.
    void Finish();

private:
    Record recordOf(double seconds, const tarnel::Answer& answer) const;
    std::string textOf(const Record& record) const;
    void writeToFile(const Record& record, double seconds);

    const Profile& profile;
    const Format format;
    const std::string path;
    const LineFile::Existing existing;
    const std::vector<std::string> columns;
    const bool isLive;
    RecordWriter writer;
    std::optional<LineFile> file;
    StatusLine status;
    std::string lastText;
    std::size_t shown = 0;
};

} // namespace orvane::tool
