#include "headless/tracks/TrackText.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace headless {

namespace {

// A CR alone also ends a line.
std::string withNewlines(std::string text) {
    for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos; ++at) {
        if (at + 1 == text.size() || text[at + 1] != '\n') {
            text[at] = '\n';
        }
    }
    return text;
}

} // namespace

std::string wholeFile(const std::string& path) {
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    if (!stream) {
        throw TextFileError(path + ": cannot be opened: " + std::strerror(errno));
    }
    if (stream.peek() != std::ifstream::traits_type::eof() && !(text << stream.rdbuf())) {
        throw TextFileError(path + ": cannot be read");
    }
    return text.str();
}

double numberIn(std::string_view text) {
    const std::string_view digits = text.substr(text.starts_with('+') ? 1 : 0);
    double number = 0.0;
    const char* const last = digits.data() + digits.size();
    const auto [stopped, error] = std::from_chars(digits.data(), last, number);
    if (error != std::errc{} || stopped != last) {
        throw std::invalid_argument("\"" + std::string(text) + "\" is not a number");
    }
    return number;
}

double finiteNumberIn(std::string_view text) {
    const double number = numberIn(text);
    if (!std::isfinite(number)) {
        throw std::invalid_argument("\"" + std::string(text) + "\" is not a finite number");
    }
    return number;
}

void parseTrack(Track& track, const std::string& text, const std::string& name,
                const std::function<void(const std::string& line, int number)>& parse) {
    std::istringstream stream(withNewlines(text));
    forEachLine(stream, name, [&](const std::string& line, int number) {
        try {
            parse(line, number);
        } catch (const std::invalid_argument& error) {
            track.warnings.push_back(name + ":" + std::to_string(number) + ": " + error.what());
        }
    });
    if (track.rows.empty()) {
        throw TextFileError(track.warnings.empty() ? name + ": it has no row of flight data"
                                                   : track.warnings.front());
    }
}

} // namespace headless
