#include "tools/orvane/drive/DriveOutput.h"

#include <unistd.h>

#include <chrono>
#include <iterator>
#include <utility>
#include <variant>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/latency/RoundTrips.h"
#include "tools/orvane/terminal/PrintableText.h"
#include "tools/orvane/terminal/Progress.h"

namespace orvane::tool {

namespace {

// Enough for two days at the default rate; later ones are not counted.
constexpr std::size_t kMaxRoundTrips = 10'000'000;

Record jsonOf(bool isDown) {
    return isDown;
}

template <typename Value>
Record jsonOf(const Value& value) {
    return valueJson(velmar::Value(value));
}

std::vector<std::string> columnsOf(const Profile& profile) {
    std::vector<std::string> columns{"time"};
    for (const ProfileOutput& output : profile.outputs) {
        columns.push_back(output.name);
    }
    columns.emplace_back(kAircraftId);
    return columns;
}

std::string aircraftOrNone(std::uint32_t id) {
    return id == 0 ? "none" : aircraftText(id);
}

} // namespace

DriveOutput::DriveOutput(const Profile& profile, const DriveView& view)
    : profile(profile),
      view(view),
      // A file is for machines.
      format(view.output.path.empty() || view.format == Format::Json ? view.format : Format::Csv),
      columns(columnsOf(profile)),
      terminal(STDOUT_FILENO),
      writer(format, columns) {
    if (view.output.path.empty() && !writer.IsWanted() && !view.isPlain && terminal.IsTerminal()) {
        screen.emplace(terminal);
        table.emplace(profile);
    }
}

void DriveOutput::Begin() {
    if (view.output.path.empty()) {
        return;
    }
    file.emplace(view.output.path, view.output.Existing());
    if (format == Format::Csv) {
        file->Append(csvHeader(columns));
    }
}

Record DriveOutput::recordOf(const Exchange& exchange) const {
    // The names are unique; operator[] would compare each with all before it.
    Record::object_t fields;
    fields.emplace_back("time", toThreeDecimals(exchange.seconds));
    const tarnel::Answer& answer = exchange.answer;
    for (const ProfileOutput& output : profile.outputs) {
        fields.emplace_back(output.name, std::visit([](const auto& value) { return jsonOf(value); },
                                                    answer.at(output.id)));
    }
    fields.emplace_back(kAircraftId,
                        aircraftRecord(answer.isAircraftLoaded() ? answer.aircraftId : 0));
    return fields;
}

std::string DriveOutput::textOf(const Record& record) const {
    std::string text = fmt::format("{:.3f}", record.at("time").get<double>());
    auto field = std::next(record.begin());
    for (const ProfileOutput& output : profile.outputs) {
        text += fmt::format(" {}={}", output.name, fieldText(output.name, *field++));
    }
    const Record& aircraft = *field;
    return text + fmt::format(" {}={}", kAircraftId,
                              aircraft.is_null() ? "none" : fieldText(kAircraftId, aircraft));
}

void DriveOutput::Show(const Exchange& exchange) {
    ++shown;
    seconds = exchange.seconds;
    aircraft = exchange.answer.aircraftId;
    if (view.hasSummary && roundTripsMs.size() < kMaxRoundTrips) {
        roundTripsMs.push_back(exchange.roundTripMs);
    }
    if (file) {
        writeToFile(exchange);
    } else if (screen) {
        showLive(exchange);
    } else if (writer.IsWanted()) {
        writer.Write(recordOf(exchange));
    } else {
        printLine(textOf(recordOf(exchange)));
    }
}

void DriveOutput::writeToFile(const Exchange& exchange) {
    const Record record = recordOf(exchange);
    file->Append(format == Format::Json ? jsonText(record) : csvLine(columns, record));
    if (!file->IsTerminal() && status.IsDue()) {
        status.Show(progressText(seconds, shown, file->Bytes()));
    }
}

void DriveOutput::showLive(const Exchange& exchange) {
    const auto now = std::chrono::steady_clock::now();
    table->See(exchange.items, exchange.answer, now);
    const std::string time = view.seconds
                                 ? fmt::format("{:.1f} of {:.1f} s", seconds, *view.seconds)
                                 : fmt::format("{:.1f} s", seconds);
    title =
        fmt::format("{}:{}   {}   {} exchanges   {:.1f} ms   aircraft {}", printable(exchange.host),
                    view.port, time, shown, exchange.roundTripMs, aircraftOrNone(aircraft));
    if (screen->IsDue(now)) {
        screen->Draw(table->Lines(title, terminal), now);
    }
}

void DriveOutput::Finish() {
    if (file) {
        printError(
            fmt::format("{}: {}, {}", file->Name(), rowsText(shown), sizeText(file->Bytes())));
    } else if (screen && shown > 0) {
        screen->Draw(table->Lines(title, terminal), std::chrono::steady_clock::now());
        // Gives the terminal back.
        screen.reset();
    }
    if (view.hasSummary && shown > 0) {
        printErrorText(summary());
    }
}

std::string DriveOutput::summary() const {
    const auto time = [this](double percent) { return percentile(roundTripsMs, percent); };
    const double rate = seconds > 0 ? static_cast<double>(shown) / seconds : 0;
    return fmt::format(
        "\n"
        "  exchanges    {} in {:.1f} s, {:.1f} per second\n"
        "  round trips  min {:.3f} ms, median {:.3f} ms, 95 % {:.3f} ms, max {:.3f} ms\n"
        "  aircraft     {}\n",
        shown, seconds, rate, time(0), time(50), time(95), time(100), aircraftOrNone(aircraft));
}

} // namespace orvane::tool
