// The part of DatarefProvider that reads and extends the configuration file.

#include <algorithm>
#include <fstream>
#include <new>
#include <stdexcept>

#include "datarefs/DatarefProvider.h"

namespace {

constexpr char kComment = '#';
constexpr char kFieldSeparator = ' ';
constexpr const char* kArrayEnding = "_array";

// 0 if `text` is not a number of elements.
std::size_t sizeFrom(const std::string& text) {
    try {
        return static_cast<std::size_t>(std::max(std::stoi(text), 0));
    } catch (const std::logic_error&) {
        return 0;
    }
}

} // namespace

bool hasEnding(const std::string& text, const std::string& ending) {
    return text.ends_with(ending);
}

void DatarefProvider::ParseConfig() {
    std::ifstream file(configFilePath);
    if (!file.is_open()) {
        return;
    }
    configNames.clear();
    std::string line;
    while (std::getline(file, line)) {
        parseConfigLine(line);
    }
}

void DatarefProvider::parseConfigLine(std::string line) {
    const auto comment = line.find(kComment);
    if (comment != std::string::npos) {
        line.erase(comment);
    }
    if (line.empty()) {
        return;
    }
    const std::vector<std::string> fields = splitString(line, kFieldSeparator);
    if (fields.size() < 2) {
        return;
    }
    const std::string& name = fields[0];
    const std::string& type = fields[1];
    if (type == "int" || type == "float" || type == "double") {
        registerScalar(name, type);
    } else if (fields.size() > 2) {
        registerArray(name, type, fields[2]);
    }
}

// Notes the name before the registration, which would otherwise declare it once more.
void DatarefProvider::registerScalar(const std::string& name, const std::string& type) {
    configNames.insert(name);
    if (type == "int") {
        RegisterInt(name);
    } else if (type == "float") {
        RegisterFloat(name);
    } else {
        RegisterDouble(name);
    }
}

void DatarefProvider::registerArray(const std::string& name, const std::string& type,
                                    const std::string& sizeText) {
    const std::size_t size = sizeFrom(sizeText);
    if (size == 0 || (type != "int_array" && type != "float_array" && type != "byte_array")) {
        return;
    }
    const bool isNew = configNames.insert(name).second;
    try {
        if (type == "int_array") {
            RegisterIntArray(size, name);
        } else if (type == "float_array") {
            RegisterFloatArray(size, name);
        } else {
            RegisterByteArray(size, name);
        }
    } catch (const std::bad_alloc&) {
        // Not enough memory: the line is ignored, like a malformed one.
        if (isNew) {
            configNames.erase(name);
        }
    }
}

std::vector<std::string> DatarefProvider::splitString(const std::string& text, char delimiter) {
    std::vector<std::string> tokens;
    std::size_t begin = 0;
    for (std::size_t end = text.find(delimiter); end != std::string::npos;
         end = text.find(delimiter, begin)) {
        if (end > begin) {
            tokens.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    tokens.push_back(text.substr(begin));
    return tokens;
}

void DatarefProvider::ensureDatarefInConfig(const std::string& name, const std::string& type,
                                            int size) {
    if (configNames.contains(name)) {
        return;
    }
    std::fstream file(configFilePath, std::ios::in | std::ios::out | std::ios::app);
    if (!file.is_open()) {
        return;
    }
    file << '\n' << std::flush;
    file << name << ' ' << type;
    if (hasEnding(type, kArrayEnding)) {
        // As text: under another locale a stream would group the digits.
        file << ' ' << std::to_string(size);
    }
    configNames.insert(name);
}
