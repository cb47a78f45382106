#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "support/Bytes.h"

// The vectors of tests/vectors, as its README describes them.

// The words of a statement, without its remark.
using WireWords = std::vector<std::string>;

// A statement. Requests and answers also have their bytes, and the statements of their meaning.
struct WireStep {
    std::string keyword;
    std::string text; // what follows the keyword
    std::vector<WireWords> meaning{};
    Bytes bytes{};
    std::string place{}; // "tarnel-inputs.txt:12"

    bool Is(const std::string& wantedKeyword, const std::string& textBegins = {}) const {
        return keyword == wantedKeyword && text.starts_with(textBegins);
    }
};

struct WireVector {
    std::string name;
    std::vector<WireStep> steps{};
};

// All vectors of the folder's files. Throws std::runtime_error with file and line for invalid
// text.
std::vector<WireVector> readWireVectors();

WireWords wordsOf(const std::string& text);
// The parts between commas.
WireWords listOf(const std::string& text);

// For GoogleTest's parameterised tests: a name of letters, digits and underscores, and what a
// vector is printed as.
std::string testNameOf(const WireVector& vector);
void PrintTo(const WireVector& vector, std::ostream* out);
