#include "tools/orvane/drive/DriveOutput.h"

#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/terminal/Progress.h"
#include "tools/orvane/terminal/Terminal.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <variant>

namespace orvane::tool {

namespace {

Record jsonOf(bool isDown) {
    return isDown;
}

template <typename Value>
Record jsonOf(const Value& value) {
    return valueJson(velmar::Value(value));
}

// As in a line of CSV, but never in quotes.
std::string cellText(const Record& field) {
    const std::string text = csvLine({"field"}, Record{{"field", field}});
    return text.starts_with('"') ? text.substr(1, text.size() - 2) : text;
}

double inMilliseconds(double seconds) {
    constexpr double kMsPerSecond = 1000;
    return std::round(seconds * kMsPerSecond) / kMsPerSecond;
}

std::vector<std::string> columnsOf(const Profile& profile) {
    std::vector<std::string> columns{"time"};
    for (const ProfileOutput& output : profile.outputs) {
        columns.push_back(output.name);
    }
    columns.emplace_back("aircraft");
    return columns;
}

} // namespace

DriveOutput::DriveOutput(const Profile& drivenProfile, Format outputFormat,
                         const std::string& filePath, LineFile::Existing existingFile)
    : profile(drivenProfile),
      // A file is for machines to read.
      format(filePath.empty() || outputFormat == Format::Json ? outputFormat : Format::Csv),
      path(filePath),
      existing(existingFile),
      columns(columnsOf(profile)),
      isLive(path.empty() && format == Format::Text && Terminal(STDOUT_FILENO).IsTerminal()),
      writer(format, columns) {}

void DriveOutput::Begin() {
    if (path.empty()) {
        return;
    }
    file.emplace(path, existing);
    if (format == Format::Csv) {
        file->Append(csvHeader(columns));
    }
}

Record DriveOutput::recordOf(double seconds, const tarnel::Answer& answer) const {
    Record record;
    record["time"] = inMilliseconds(seconds);
    for (const ProfileOutput& output : profile.outputs) {
        record[output.name] =
            std::visit([](const auto& value) { return jsonOf(value); }, answer.at(output.id));
    }
    record["aircraft"] =
        answer.isAircraftLoaded() ? Record(fmt::format("{:08X}", answer.aircraftId)) : Record();
    return record;
}

std::string DriveOutput::textOf(const Record& record) const {
    std::string text = fmt::format("{:.3f}", record.at("time").get<double>());
    for (const ProfileOutput& output : profile.outputs) {
        text += fmt::format(" {}={}", output.name, cellText(record.at(output.name)));
    }
    const Record& aircraft = record.at("aircraft");
    return text + " aircraft=" + (aircraft.is_null() ? "none" : aircraft.get<std::string>());
}

void DriveOutput::Show(double seconds, const tarnel::Answer& answer) {
    const Record record = recordOf(seconds, answer);
    ++shown;
    if (file) {
        writeToFile(record, seconds);
    } else if (writer.IsWanted()) {
        writer.Write(record);
    } else if (isLive) {
        lastText = textOf(record);
        if (status.IsDue()) {
            status.Show(lastText);
        }
    } else {
        writeOut(textOf(record) + "\n");
    }
}

void DriveOutput::writeToFile(const Record& record, double seconds) {
    file->Append(format == Format::Json ? jsonText(record) : csvLine(columns, record));
    if (status.IsDue()) {
        status.Show(progressText(seconds, shown, file->Bytes()));
    }
}

void DriveOutput::Finish() {
    status.Clear();
    if (file) {
        fmt::print(stderr, "{}: {}, {}\n", path, rowsText(shown), sizeText(file->Bytes()));
    } else if (isLive && shown > 0) {
        writeOut(lastText + "\n");
    }
}

} // namespace orvane::tool
