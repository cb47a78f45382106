#pragma once

#include <array>
#include <chrono>
#include <span>
#include <string>
#include <vector>

#include "headless/tracks/FdrDatarefs.h"

namespace headless {

struct FdrColumn {
    std::string dataref;
    // Empty for none.
    std::string comment;
};

// What a flight data recorder's file says before its rows.
struct FdrHead {
    // The path of its file.
    std::string aircraft;
    std::string tailNumber;
    // Of the day; the fraction is dropped.
    double zuluSeconds = 0.0;
    std::chrono::year_month_day date{};
    double pressureInHg = 0.0;
    double temperatureC = 0.0;
    double windDegrees = 0.0;
    double windKnots = 0.0;
    std::vector<FdrColumn> columns;
};

// Writes the text that parseFdr reads, version 4; lines without their ends. Numbers are in the
// simulator's units and must be finite. What is a float reads back as the same float, anything else
// as the same double; but feet and °F have four decimals.
std::vector<std::string> fdrHeadLines(const FdrHead& head);

// `pose` is in the order of kFdrPose; `numbers` has one for each column. Seconds go on after
// midnight; the fraction is dropped.
std::string fdrRow(double zuluSeconds, const std::array<double, kFdrPose.size()>& pose,
                   std::span<const double> numbers);

} // namespace headless
