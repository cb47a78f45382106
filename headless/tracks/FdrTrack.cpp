#include "headless/tracks/FdrTrack.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "headless/tracks/FdrDatarefs.h"
#include "headless/tracks/FdrTime.h"
#include "headless/tracks/TrackText.h"

namespace headless {

namespace {

constexpr std::string_view kSeparators = ", \t";

// A weather field and the dataref that it sets, if the world has it.
struct WeatherField {
    std::string_view keyword;
    std::size_t field;
    const char* dataref;
    double factor;
    double offset;
};

// Inches of mercury; degrees Fahrenheit; degrees Celsius above standard air; degrees and knots.
constexpr WeatherField kWeather[] = {
    {"PRES", 0, kFdrPressureInHg, 1.0, 0.0},  {"TEMP", 0, kFdrTemperatureC, 1.0 / 1.8, -32.0 / 1.8},
    {"DISA", 0, kFdrTemperatureC, 1.0, 15.0}, {"WIND", 0, kFdrWindDegrees, 1.0, 0.0},
    {"WIND", 1, kFdrWindKnots, 1.0, 0.0},
};

std::vector<std::string> fieldsOf(std::string_view text) {
    std::vector<std::string> fields;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(kSeparators), text.size()));
        if (text.empty()) {
            return fields;
        }
        fields.emplace_back(text.substr(0, text.find_first_of(kSeparators)));
        text.remove_prefix(fields.back().size());
    }
}

std::string_view trimmedField(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kSeparators), text.size()));
    return text.substr(0, text.find_last_not_of(kSeparators) + 1);
}

std::string numberText(double number) {
    std::ostringstream text;
    text.precision(10);
    text << number;
    return text.str();
}

// Only the file name of an aircraft is known, so it becomes the description.
std::string aircraftIn(std::string_view path) {
    path.remove_prefix(path.find_last_of("/\\:") + 1);
    return std::string(path.substr(0, path.rfind('.')));
}

// Reads one file, line by line.
class Reader final {
public:
    Track Read(const std::string& text, const std::string& name) {
        for (const char* const dataref : kFdrPose) {
            track.columns.push_back({dataref});
        }
        track.columns[kFdrElevation].factor = kMetresPerFoot;
        track.columns.push_back({kFdrZuluTime});
        place.file = name;
        parseTrack(track, text, name, [&](const std::string& line, int number) {
            place.line = number;
            readLine(line);
        });
        spreadRows(track.rows, hasSeconds ? 1.0 : 60.0);
        beginAtZero();
        return std::move(track);
    }

private:
    struct Place {
        std::string file;
        int line = 0;
        std::string Text() const { return file + ":" + std::to_string(line) + ": "; }
    };

    void readLine(const std::string& text) {
        const std::string_view content = trimmedField(text);
        require(place.line == 1 ? content == "A" || content == "I" : linesRead > 0,
                place.file + ":1: the first line is not A or I");
        const int line = linesRead++;
        if (line == 1) {
            const std::vector<std::string> fields = fieldsOf(content);
            require(!fields.empty() && fields.front() == "4",
                    place.Text() + "only version 4 of the format is read");
        } else if (line > 1 && !content.empty()) {
            readContent(content);
        }
    }

    static void require(bool holds, const std::string& complaint) {
        if (!holds) {
            throw TextFileError(complaint);
        }
    }

    void readContent(std::string_view content) {
        if (content.front() >= '0' && content.front() <= '9') {
            readRow(fieldsOf(content));
            return;
        }
        const std::string keyword(content.substr(0, content.find_first_of(kSeparators)));
        const std::string_view rest = trimmedField(content.substr(keyword.size()));
        if (keyword == "DREF") {
            readColumn(rest);
        } else if (keyword == "ACFT") {
            track.aircraft = aircraftIn(rest);
        } else if (keyword == "TAIL") {
            track.settings.push_back({"sim/aircraft/view/acf_tailnum", std::string(rest)});
        } else if (keyword == "TIME") {
            track.settings.push_back(
                {kFdrZuluTime, numberText(timeOfDayIn(std::string(rest)).seconds)});
        } else if (kRemarks.contains(keyword)) {
            readRemark(keyword, rest);
        } else if (!readWeather(keyword, rest)) {
            noteUnknown(keyword);
        }
    }

    // A DREF that cannot be read still has its column in the rows.
    void readColumn(std::string_view rest) {
        const std::size_t comment = std::min(rest.find("//"), rest.size());
        const std::vector<std::string> fields = fieldsOf(rest.substr(0, comment));
        track.columns.emplace_back();
        track.columns.back().line = place.line;
        if (fields.empty()) {
            throw std::invalid_argument("DREF has no dataref");
        }
        track.columns.back().factor = fields.size() > 1 ? finiteNumberIn(fields[1]) : 1.0;
        track.columns.back().name = fields[0];
        if (comment < rest.size()) {
            track.columns.back().comment = trimmedField(rest.substr(comment + 2));
        }
    }

    void readRemark(const std::string& keyword, std::string_view rest) {
        const std::vector<std::string> fields = fieldsOf(rest);
        const double seconds = fields.empty() ? 0.0 : finiteNumberIn(fields[0]);
        track.remarks.push_back({seconds, keyword + ", " + std::string(rest)});
    }

    bool readWeather(const std::string& keyword, std::string_view rest) {
        const std::vector<std::string> fields = fieldsOf(rest);
        bool isWeather = false;
        for (const WeatherField& weather : kWeather) {
            if (weather.keyword == keyword) {
                isWeather = true;
                if (fields.size() <= weather.field) {
                    throw std::invalid_argument(keyword + " has too few numbers");
                }
                const double number = finiteNumberIn(fields[weather.field]);
                track.settings.push_back(
                    {weather.dataref, numberText(number * weather.factor + weather.offset)});
            }
        }
        return isWeather;
    }

    void noteUnknown(const std::string& keyword) {
        const std::set<std::string_view> without{"COMM", "DATE", "CALI"};
        if (!without.contains(keyword) && reported.insert(keyword).second) {
            track.unknown.push_back(place.Text() + "unknown keyword \"" + keyword +
                                    "\"; such lines are skipped");
        }
    }

    void readRow(const std::vector<std::string>& fields) {
        const TimeOfDay time = timeOfDayIn(fields[0]);
        // The time is a separate column at the end of the pose.
        const std::size_t wanted = track.columns.size();
        if (fields.size() != wanted) {
            throw std::invalid_argument(std::to_string(fields.size()) + " fields, but " +
                                        std::to_string(wanted) + " columns");
        }
        TrackRow row{secondsAfter(track.rows, time.seconds), {}};
        for (std::size_t i = 0; i < wanted; ++i) {
            const std::size_t field = i < kFdrPose.size() ? i + 1 : i;
            const bool isTime = i == kFdrPose.size();
            row.numbers.push_back(isTime ? time.seconds
                                         : finiteNumberIn(fields[field]) * track.columns[i].factor);
        }
        track.rows.push_back(std::move(row));
        hasSeconds = hasSeconds || time.hasSeconds;
    }

    void beginAtZero() {
        const double first = track.rows.front().seconds;
        for (TrackRow& row : track.rows) {
            row.seconds -= first;
        }
        std::stable_sort(track.remarks.begin(), track.remarks.end(),
                         [](const TrackRemark& one, const TrackRemark& other) {
                             return one.seconds < other.seconds;
                         });
    }

    static inline const std::set<std::string_view> kRemarks{"TEXT", "WARN", "MARK", "EVNT"};

    Track track;
    Place place; // of the line that is read
    int linesRead = 0;
    bool hasSeconds = false;
    std::set<std::string> reported;
};

} // namespace

Track parseFdr(const std::string& text, const std::string& name) {
    return Reader().Read(text, name);
}

} // namespace headless
