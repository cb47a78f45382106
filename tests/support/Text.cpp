#include "support/Text.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

std::string contentOf(const std::filesystem::path& file) {
    const std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

std::string outputOf(const std::string& command) {
    FILE* const pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string text;
    std::array<char, 0x10000> chunk;
    for (std::size_t count = 0; (count = std::fread(chunk.data(), 1, chunk.size(), pipe)) > 0;) {
        text.append(chunk.data(), count);
    }
    if (::pclose(pipe) != 0) {
        throw std::runtime_error(command + " failed: " + text);
    }
    return text;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}
