#include "tools/orvane/record/RecordingFile.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <fmt/core.h>

#include "headless/lists/TextLines.h"
#include "headless/tracks/FdrTrack.h"
#include "tools/orvane/files/InputFile.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/record/FdrRecording.h"

namespace orvane::tool {

namespace {

// Removes a last line without a line end, which was cut off while it was written. Returns its
// number, or 0.
std::size_t removeCutLine(std::string& text) {
    const std::size_t end = text.find_last_of("\r\n");
    if (text.empty() || end + 1 == text.size()) {
        return 0;
    }
    text.erase(end + 1);
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
}

void printEach(const std::vector<std::string>& lines) {
    std::for_each(lines.begin(), lines.end(), [](const std::string& line) { printError(line); });
}

std::optional<Recording> validRecording(Recording recording, const std::string& path,
                                        const Problems& problems) {
    printProblems(path, problems);
    return problems.empty() ? std::optional(std::move(recording)) : std::nullopt;
}

std::optional<Recording> readFdr(const std::string& path) {
    std::string text = readWholeFile(path);
    const std::size_t cutLine = removeCutLine(text);
    headless::Track track;
    try {
        track = headless::parseFdr(text, path);
    } catch (const headless::TextFileError& error) {
        printError(error.what());
        return std::nullopt;
    }
    printEach(track.unknown);
    printEach(track.warnings);
    if (!track.warnings.empty()) {
        return std::nullopt;
    }
    Problems problems;
    Recording recording = fdrRecording(track, problems);
    recording.cutLine = cutLine;
    return validRecording(std::move(recording), path, problems);
}

std::optional<Recording> readCsv(const std::string& path) {
    InputLines lines(path);
    Problems problems;
    Recording recording = readRecording(lines, problems);
    return validRecording(std::move(recording), path, problems);
}

} // namespace

std::optional<Recording> readRecordingFile(const std::string& path) {
    std::optional<Recording> recording = headless::isFdrFile(path) ? readFdr(path) : readCsv(path);
    if (recording && recording->cutLine > 0) {
        printError(
            fmt::format("{}:{}: the line was cut off and is skipped", path, recording->cutLine));
    }
    return recording;
}

} // namespace orvane::tool
