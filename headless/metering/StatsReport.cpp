#include "headless/metering/StatsReport.h"

#include <unistd.h>

#include <iomanip>
#include <sstream>
#include <string_view>

#include <nlohmann/json.hpp>

#include "headless/metering/ProcessInfo.h"

namespace headless {

namespace {

double microseconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

double kilobytes(std::uint64_t pages) {
    return static_cast<double>(pages) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1024;
}

double ratio(std::uint64_t count, double of) {
    return of > 0 ? static_cast<double>(count) / of : 0.0;
}

double perFrame(const PluginFigures& plugin, std::uint64_t count) {
    return ratio(count, static_cast<double>(plugin.frames.Count()));
}

std::ostream& row(std::ostream& text, std::string_view name) {
    return text << "  " << std::left << std::setw(22) << name;
}

void describeCalls(std::ostream& text, const PluginFigures& plugin) {
    const std::uint64_t total = plugin.callsInFrames.Total();
    row(text, "SDK calls") << perFrame(plugin, total) << " per frame, " << total << '\n';
    for (const CallCounts::Entry& entry : plugin.callsInFrames.Entries()) {
        text << "    " << std::left << std::setw(40) << entry.function
             << perFrame(plugin, entry.count) << " per frame, " << entry.count << '\n';
    }
}

void describePlugin(std::ostream& text, const PluginFigures& plugin, double seconds) {
    const TimeHistogram& frames = plugin.frames;
    text << plugin.file << ": " << frames.Count() << " frames\n";
    row(text, "CPU time per frame")
        << "mean " << microseconds(frames.Mean()) << " us, p50 "
        << microseconds(frames.Quantile(0.5)) << " us, p99 " << microseconds(frames.Quantile(0.99))
        << " us, worst " << microseconds(frames.Worst()) << " us\n";
    row(text, "outside of frames")
        << microseconds(plugin.outside) << " us, " << plugin.callsOutside << " calls\n";
    if (allocationsAreCounted()) {
        row(text, "allocations") << perFrame(plugin, plugin.allocations) << " per frame, worst "
                                 << plugin.mostAllocations << '\n';
    } else {
        row(text, "allocations") << "not counted\n";
    }
    row(text, "memory growth") << kilobytes(plugin.pages) << " KB\n";
    row(text, "log") << ratio(plugin.logLinesInFrames, seconds) << " lines per second\n";
    describeCalls(text, plugin);
}

nlohmann::ordered_json jsonOf(const PluginFigures& plugin, double seconds) {
    const TimeHistogram& frames = plugin.frames;
    nlohmann::ordered_json calls = nlohmann::ordered_json::object();
    for (const CallCounts::Entry& entry : plugin.callsInFrames.Entries()) {
        calls[std::string(entry.function)] = entry.count;
    }
    nlohmann::ordered_json allocations;
    if (allocationsAreCounted()) {
        allocations = {{"per_frame", perFrame(plugin, plugin.allocations)},
                       {"worst", plugin.mostAllocations}};
    }
    return {{"file", plugin.file},
            {"frames", frames.Count()},
            {"cpu_us",
             {{"mean", microseconds(frames.Mean())},
              {"p50", microseconds(frames.Quantile(0.5))},
              {"p99", microseconds(frames.Quantile(0.99))},
              {"worst", microseconds(frames.Worst())}}},
            {"outside", {{"cpu_us", microseconds(plugin.outside)}, {"calls", plugin.callsOutside}}},
            {"allocations", allocations},
            {"growth_kb", kilobytes(plugin.pages)},
            {"log_lines_per_second", ratio(plugin.logLinesInFrames, seconds)},
            {"calls", calls}};
}

} // namespace

std::string statsAsText(const Meter& meter) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(2);
    for (const auto& plugin : meter.Plugins()) {
        describePlugin(text, *plugin, meter.Seconds());
    }
    text << "the process: " << meter.ResidentKilobytesAtFirst()
         << " KB resident before the first frame, " << residentKilobytes() << " KB now\n";
    return text.str();
}

std::string statsAsJson(const Meter& meter) {
    nlohmann::ordered_json plugins = nlohmann::ordered_json::array();
    for (const auto& plugin : meter.Plugins()) {
        plugins.push_back(jsonOf(*plugin, meter.Seconds()));
    }
    const nlohmann::ordered_json report = {
        {"seconds", meter.Seconds()},
        {"resident_kb",
         {{"first", meter.ResidentKilobytesAtFirst()}, {"now", residentKilobytes()}}},
        {"plugins", plugins}};
    // A file name may not be valid text.
    return report.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string overBudget(const PluginFigures& frame, double budgetMicroseconds) {
    if (microseconds(frame.usage.cpu) <= budgetMicroseconds) {
        return {};
    }
    std::ostringstream text;
    text << frame.file << " took " << std::fixed << std::setprecision(1)
         << microseconds(frame.usage.cpu) << " us of CPU time in frame " << frame.frames.Count() + 1
         << ", " << std::defaultfloat << std::setprecision(6) << budgetMicroseconds
         << " us are allowed";
    std::string_view separator = ": ";
    for (const CallCounts::Entry& entry : frame.calls.Entries()) {
        text << separator << entry.function << ' ' << entry.count;
        separator = ", ";
    }
    return text.str();
}

} // namespace headless
