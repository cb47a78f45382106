#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvane::tool::config {

enum class DatarefType { Int, Float, Double, IntArray, FloatArray, ByteArray };

// The type's name in the file.
const char* typeWord(DatarefType type);
bool isArray(DatarefType type);

struct Declaration {
    std::string name{};
    DatarefType type = DatarefType::Int;
    int size = 0; // elements of an array, 0 for scalars

    bool operator==(const Declaration&) const = default;
};

// "int", "int_array[4]".
std::string typeText(const Declaration& declared);

enum class Reason {
    None,
    Tab,
    CarriageReturn,
    CutByComment,
    NoType,
    UnknownType,
    NoSize,
    SizeNotANumber,
    SizeBelowOne,
    SizeTooLarge,
    Duplicate,
};

// One word for scripts: "tab", "carriage-return", ...
const char* reasonWord(Reason reason);

// What the plugin does with a line that is neither empty nor a comment.
struct ConfigLine {
    std::size_t number = 0; // from 1
    Reason reason = Reason::None;
    std::string explanation{}; // why the line is ignored
    Declaration declared{};    // what it registers, unless it is ignored
    // What may surprise in a line that does register.
    std::vector<std::string> notes{};

    bool IsIgnored() const { return reason != Reason::None; }
};

// A whole file. The plugin appends its own datarefs that no line declares.
struct ConfigReport {
    std::vector<ConfigLine> lines{};
    std::vector<Declaration> appended{};

    std::size_t IgnoredCount() const;
};

} // namespace orvane::tool::config
