#include "headless/tracks/CsvTrack.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "headless/tracks/TrackText.h"

namespace headless {

namespace {

constexpr std::string_view kTime = "time";

// Fields are names and numbers, which contain no quotes.
std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    while (true) {
        const bool isQuoted = line.starts_with('"');
        const std::size_t end =
            isQuoted ? line.find('"', 1) : std::min(line.find(','), line.size());
        if (end == std::string_view::npos) {
            throw std::invalid_argument("a quote is not closed");
        }
        fields.push_back(line.substr(isQuoted ? 1 : 0, isQuoted ? end - 1 : end));
        line.remove_prefix(isQuoted ? end + 1 : end);
        if (line.empty()) {
            return fields;
        }
        if (line.front() != ',') {
            throw std::invalid_argument("text follows a quote");
        }
        line.remove_prefix(1);
    }
}

// Removes the type, which follows a colon outside of brackets.
std::string_view nameIn(std::string_view heading) {
    bool isInBrackets = false;
    for (std::size_t i = 0; i < heading.size(); ++i) {
        isInBrackets = heading[i] == '[' || (isInBrackets && heading[i] != ']');
        if (heading[i] == ':' && !isInBrackets) {
            return heading.substr(0, i);
        }
    }
    return heading;
}

void appendNumbers(std::string_view field, std::vector<double>& numbers) {
    while (true) {
        const std::size_t comma = field.find(',');
        numbers.push_back(numberIn(field.substr(0, comma)));
        if (comma == std::string_view::npos) {
            return;
        }
        field.remove_prefix(comma + 1);
    }
}

// Without a header the file cannot be read.
std::vector<std::string_view> headingsIn(std::string_view line, const std::string& place) {
    try {
        return fieldsOf(line);
    } catch (const std::invalid_argument& error) {
        throw TextFileError(place + error.what());
    }
}

// Reads one file, line by line.
class Reader final {
public:
    explicit Reader(double secondsBetweenRows) : rowSeconds(secondsBetweenRows) {}

    Track Read(const std::string& text, const std::string& name) {
        parseTrack(track, text, name, [&](const std::string& line, int number) {
            if (track.columns.empty()) {
                readHeader(line, name + ":" + std::to_string(number) + ": ");
            } else {
                readRow(fieldsOf(line));
            }
        });
        const double first = track.rows.front().seconds;
        for (TrackRow& row : track.rows) {
            row.seconds -= first;
        }
        return std::move(track);
    }

private:
    void readHeader(const std::string& line, const std::string& place) {
        const std::vector<std::string_view> fields = headingsIn(line, place);
        hasTimes = fields.front() == kTime;
        for (const std::string_view field : std::vector(fields.begin() + hasTimes, fields.end())) {
            const std::string_view name = nameIn(field);
            if (name.empty() || name.find('/') == std::string_view::npos) {
                throw TextFileError(place + "\"" + std::string(field) +
                                    "\" is not the name of a dataref");
            }
            track.columns.push_back({std::string(name)});
        }
        if (track.columns.empty()) {
            throw TextFileError(place + "no datarefs are named");
        }
    }

    void readRow(const std::vector<std::string_view>& fields) {
        const std::size_t wanted = track.columns.size() + (hasTimes ? 1 : 0);
        if (fields.size() != wanted) {
            throw std::invalid_argument(std::to_string(fields.size()) + " fields, but " +
                                        std::to_string(wanted) + " columns");
        }
        TrackRow row{secondsIn(fields), {}};
        for (std::size_t i = 0; i < track.columns.size(); ++i) {
            const std::size_t before = row.numbers.size();
            appendNumbers(fields[i + (hasTimes ? 1 : 0)], row.numbers);
            requireWidth(track.columns[i], row.numbers.size() - before);
        }
        track.rows.push_back(std::move(row));
    }

    // The first row determines how many numbers an array has.
    void requireWidth(TrackColumn& column, std::size_t width) const {
        column.width = track.rows.empty() ? width : column.width;
        if (column.width != width) {
            throw std::invalid_argument(column.name + ": " + std::to_string(width) +
                                        " numbers, but " + std::to_string(column.width) +
                                        " in the first row");
        }
    }

    double secondsIn(const std::vector<std::string_view>& fields) const {
        if (!hasTimes) {
            return static_cast<double>(track.rows.size()) * rowSeconds;
        }
        const double seconds = finiteNumberIn(fields.front());
        if (!track.rows.empty() && seconds < track.rows.back().seconds) {
            throw std::invalid_argument("the row is earlier than the one before");
        }
        return seconds;
    }

    double rowSeconds;
    bool hasTimes = false;
    Track track;
};

} // namespace

Track parseCsv(const std::string& text, const std::string& name, double rowSeconds) {
    return Reader(rowSeconds).Read(text, name);
}

} // namespace headless
