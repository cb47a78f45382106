#include "headless/lists/TextLines.h"

#include <cerrno>
#include <cstring>
#include <fstream>

namespace headless {

void forEachLine(std::istream& stream, const std::string& fileName,
                 const std::function<void(const std::string& line, int number)>& parse) {
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.find_first_not_of(" \t") == std::string::npos) {
            continue;
        }
        try {
            parse(line, number);
        } catch (const std::invalid_argument& error) {
            throw TextFileError(fileName + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    if (stream.bad()) {
        throw TextFileError(fileName + ": cannot be read");
    }
}

std::ifstream openTextFile(const std::string& path) {
    errno = 0;
    std::ifstream stream(path);
    if (!stream) {
        throw TextFileError(path + ": cannot be opened: " + std::strerror(errno));
    }
    return stream;
}

} // namespace headless
