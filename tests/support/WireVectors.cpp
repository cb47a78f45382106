#include "support/WireVectors.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

constexpr std::array kHappenings{"set", "press", "begin",  "end",   "aircraft",
                                 "log", "reads", "phases", "vector"};
constexpr std::array kMessages{"request", "answer"};
constexpr std::array kMeanings{"input", "output", "item", "value", "packet", "reply"};

template <typename Words>
bool isOneOf(const Words& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

std::string withoutRemark(const std::string& line) {
    const std::size_t remark = line.starts_with("#") ? 0 : line.find(" #");
    const std::string text = line.substr(0, remark);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

// Appends the words of a line of bytes; offsets count from `base`.
void addBytes(Bytes& bytes, std::size_t& base, const std::string& line) {
    for (const std::string& word : wordsOf(line)) {
        if (word == "[") {
            base = bytes.size();
        } else if (word == "]") {
            base = 0;
        } else if (word.front() == '@') {
            const std::size_t size = base + std::stoul(word.substr(1));
            if (size < bytes.size()) {
                throw std::invalid_argument(word + " is less than what is there already");
            }
            bytes.resize(size);
        } else if (word.front() == '"') {
            bytes.insert(bytes.end(), word.begin() + 1, word.end() - 1);
        } else {
            const Bytes byte = fromHex(word);
            bytes.insert(bytes.end(), byte.begin(), byte.end());
        }
    }
}

class VectorReader {
public:
    explicit VectorReader(std::vector<WireVector>& vectors) : vectors(vectors) {}

    void Read(const std::string& line, const std::string& place) {
        const std::string text = withoutRemark(line);
        if (text.empty()) {
            return;
        }
        if (text.front() == ' ') {
            addBytes(message().bytes, base, text);
            return;
        }
        const std::string keyword = text.substr(0, text.find(' '));
        const std::string rest = text.substr(std::min(text.size(), keyword.size() + 1));
        if (isOneOf(kMeanings, keyword)) {
            message().meaning.push_back(wordsOf(text));
        } else if (keyword == "vector") {
            vectors.push_back({rest});
        } else if (isOneOf(kHappenings, keyword) || isOneOf(kMessages, keyword)) {
            current().steps.push_back({.keyword = keyword, .text = rest, .place = place});
            base = 0;
        } else {
            throw std::invalid_argument("unknown statement " + keyword);
        }
    }

private:
    WireVector& current() {
        if (vectors.empty()) {
            throw std::invalid_argument("this belongs to no vector");
        }
        return vectors.back();
    }

    WireStep& message() {
        std::vector<WireStep>& steps = current().steps;
        if (steps.empty() || !isOneOf(kMessages, steps.back().keyword)) {
            throw std::invalid_argument("this belongs to no request or answer");
        }
        return steps.back();
    }

    std::vector<WireVector>& vectors;
    std::size_t base = 0;
};

void readFile(const std::filesystem::path& path, std::vector<WireVector>& vectors) {
    std::ifstream file(path);
    VectorReader reader(vectors);
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        const std::string place = path.filename().string() + ":" + std::to_string(++number);
        try {
            reader.Read(line, place);
        } catch (const std::exception& error) {
            throw std::runtime_error(place + ": " + error.what());
        }
    }
}

} // namespace

std::vector<WireVector> readWireVectors() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(WIRE_VECTORS)) {
        if (entry.path().extension() == ".txt") {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<WireVector> vectors;
    for (const auto& path : paths) {
        readFile(path, vectors);
    }
    return vectors;
}

WireWords wordsOf(const std::string& text) {
    std::istringstream stream(text);
    WireWords words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

WireWords listOf(const std::string& text) {
    std::istringstream stream(text);
    WireWords words;
    for (std::string word; std::getline(stream, word, ',');) {
        words.push_back(word);
    }
    return words;
}

std::string testNameOf(const WireVector& vector) {
    std::string name = vector.name;
    std::replace_if(
        name.begin(), name.end(),
        [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
}

void PrintTo(const WireVector& vector, std::ostream* out) {
    *out << vector.name;
}
