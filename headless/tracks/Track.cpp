#include "headless/tracks/Track.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "headless/tracks/CsvTrack.h"
#include "headless/tracks/FdrTrack.h"
#include "headless/tracks/TrackText.h"

namespace headless {

namespace {

std::string extensionOf(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return extension;
}

} // namespace

bool isFdrFile(const std::string& path) {
    return extensionOf(path) == ".fdr";
}

Track readTrack(const std::string& path, double rowSeconds) {
    if (isFdrFile(path)) {
        return parseFdr(wholeFile(path), path);
    }
    if (extensionOf(path) == ".csv") {
        return parseCsv(wholeFile(path), path, rowSeconds);
    }
    throw TextFileError(path + ": a replay is a .fdr or a .csv file");
}

} // namespace headless
