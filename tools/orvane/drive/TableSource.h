#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/orvane/drive/InputSource.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/files/InputLines.h"
#include "tools/orvane/files/Problems.h"
#include "tools/orvane/files/TimedRows.h"

namespace orvane::tool {

// A table of values: CSV under a header of input names. A column "time" says when a row is due, in
// seconds since the session began. A value is a whole number, sent unchanged; an empty field sends
// nothing. Empty lines and lines that begin with "#" are skipped.
//
// Borrows the lines. A wrong row is added to the problems and skipped.
class TableSource final {
public:
    // Reads the header.
    TableSource(InputLines& lines, const Profile& profile, Problems& problems);

    // The next row, empty at the end.
    std::optional<InputRow> Next();

private:
    struct Column {
        std::string name;
        bool isTime = false;
        tarnel::ActionId action = 0;
    };

    std::optional<std::string> nextLine();
    void readHeader(const Profile& profile);
    std::optional<Column> columnNamed(const std::string& name, const Profile& profile);
    std::optional<InputRow> readRow(const std::string& line);
    bool readTime(std::string_view field, InputRow& row);
    bool readValue(std::string_view field, const Column& column, InputRow& row);

    InputLines& lines;
    TimedRows rows;
    std::vector<Column> columns;
};

} // namespace orvane::tool
