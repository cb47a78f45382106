#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "orvane/tarnel/Answer.h"
#include "orvane/tarnel/Client.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/terminal/Terminal.h"
#include "tools/orvane/terminal/WatchedNumber.h"

namespace orvane::tool {

// A table of a session. An input and an output of the same name share a row: what was sent, with a
// bar for an axis and a mark for a command that is down; what came back, with a curve of the latest
// values; and how one maps to the other. An array has a row for each element. Borrows the profile.
class DriveTable final {
public:
    explicit DriveTable(const Profile& profile);

    // Takes in an exchange.
    void See(std::span<const tarnel::Item> items, const tarnel::Answer& answer,
             WatchedNumber::TimePoint now);

    // The lines, cut to the size of the terminal.
    std::vector<std::string> Lines(const std::string& title, const Terminal& terminal) const;

private:
    // The curve shows the last four seconds.
    static constexpr std::chrono::milliseconds kCurveInterval{200};

    struct Row {
        std::string label;
        const ProfileInput* input = nullptr;
        const ProfileOutput* output = nullptr;
        // For an element: its index in the output and in the simulator.
        std::size_t place = 0;
        std::int32_t element = 0;
        std::string mapping{};
        std::optional<std::int32_t> sent{};
        WatchedNumber back{kCurveInterval};
    };
    struct Widths;

    void add(Row row);
    void addRowsOf(std::size_t output);
    void addInput(const ProfileInput& input, std::size_t firstRow);
    Widths widths(std::size_t columns) const;
    static std::string header(const Widths& used);
    static std::string line(const Row& row, const Widths& used, const Terminal& terminal);

    const Profile& profile;
    std::vector<Row> rows;
    std::size_t furtherRows = 0; // beyond the most that are kept
};

} // namespace orvane::tool
