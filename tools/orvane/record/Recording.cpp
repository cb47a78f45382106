#include "tools/orvane/record/Recording.h"

#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/CsvFields.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/files/TimedRows.h"

namespace orvane::tool {

namespace {

constexpr std::string_view kTime = "time";

// Reads one recording. Each step returns true if it found no error.
class Reader final {
public:
    Reader(InputLines& lines, Problems& problems) : lines(lines), rows(lines, problems) {}

    Recording Read() {
        const std::optional<std::string> header = next();
        if (!header) {
            addProblem("not a recording: it has no header");
        } else if (readHeader(*header)) {
            while (const std::optional<std::string> line = next()) {
                readRow(*line);
            }
        }
        return std::move(recording);
    }

private:
    // A line without a line end was cut off while it was written.
    std::optional<std::string> next() {
        std::optional<std::string> line = lines.Next();
        if (line && lines.IsCut()) {
            recording.cutLine = lines.Number();
            return std::nullopt;
        }
        return line;
    }

    bool readHeader(const std::string& line) {
        const auto fields = csvFields(line);
        if (!fields || fields->size() < 2 || fields->front() != kTime) {
            addProblem("not a recording: its first line is not \"time,NAME:TYPE,...\"");
            return false;
        }
        bool isValid = true;
        for (std::size_t i = 1; i < fields->size(); ++i) {
            isValid = readColumn((*fields)[i]) && isValid;
        }
        return isValid && addProblemIfFailed([this] { shareArrays(recording.datarefs); });
    }

    bool readColumn(const std::string& text) {
        return addProblemIfFailed([&] {
            const DatarefArgument argument = parseDatarefArgument(text);
            if (!argument.type) {
                throw Failure(ExitCode::WrongUsage, fmt::format("{}: the type is missing", text));
            }
            recording.datarefs.push_back(argument);
        });
    }

    // True if `step` did not fail.
    bool addProblemIfFailed(const std::function<void()>& step) {
        try {
            step();
            return true;
        } catch (const Failure& failure) {
            addProblem(failure.what());
            return false;
        }
    }

    void readRow(const std::string& line) {
        const auto fields = rows.Fields(line, recording.datarefs.size() + 1);
        if (!fields) {
            return;
        }
        if (std::optional<RecordedRow> row = rowOf(*fields)) {
            recording.rows.push_back(std::move(*row));
        }
    }

    std::optional<RecordedRow> rowOf(const std::vector<std::string>& fields) {
        const std::optional<double> seconds = rows.Seconds(fields.front());
        if (!seconds) {
            return std::nullopt;
        }
        RecordedRow row{*seconds, {}};
        for (std::size_t i = 0; i < recording.datarefs.size(); ++i) {
            const DatarefArgument& dataref = recording.datarefs[i];
            try {
                row.values.push_back(parseValue(fields[i + 1], *dataref.type, dataref.size));
            } catch (const Failure& failure) {
                addProblem(fmt::format("{}: {}", dataref.name, failure.what()));
                return std::nullopt;
            }
        }
        return row;
    }

    void addProblem(const std::string& reason) { rows.AddProblem(reason); }

    InputLines& lines;
    TimedRows rows;
    Recording recording;
};

} // namespace

std::string recordingHeader(const std::vector<DatarefArgument>& datarefs) {
    std::vector<std::string> columns{std::string(kTime)};
    for (const DatarefArgument& dataref : datarefs) {
        columns.push_back(dataref.NameAndType());
    }
    return csvHeader(columns);
}

std::string recordingRow(double seconds, const std::vector<velmar::Value>& values) {
    std::string line = fmt::format("{:.3f}", seconds);
    for (const velmar::Value& value : values) {
        const std::string text = valueText(value);
        const bool needsQuotes = text.find(',') != std::string::npos;
        line += needsQuotes ? ",\"" + text + "\"" : "," + text;
    }
    return line;
}

Recording readRecording(InputLines& lines, Problems& problems) {
    return Reader(lines, problems).Read();
}

} // namespace orvane::tool
