#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvane::tool::config {

enum class DatarefType { Int, Float, Double, IntArray, FloatArray, ByteArray };

// The word by which the file names the type.
const char* typeWord(DatarefType type);
bool isArray(DatarefType type);

struct Declaration {
    std::string name{};
    DatarefType type = DatarefType::Int;
    int size = 0; // elements of an array, 0 for scalars

    bool operator==(const Declaration&) const = default;
};

enum class Reason {
    None,
    Tab,
    CarriageReturn,
    CutByComment,
    NoType,
    UnknownType,
    NoSize,
    SizeNoNumber,
    SizeBelowOne,
    SizeTooLarge,
    Duplicate,
};

// One word for scripts: "tab", "carriage-return", ...
const char* reasonWord(Reason reason);

// What the plugin makes of one line that is neither empty nor a comment.
struct ConfigLine {
    std::size_t number = 0; // from 1
    Reason reason = Reason::None;
    std::string explanation{}; // why the line is ignored
    Declaration declared{};    // what it registers, unless it is ignored
    // What was read differently from what one may think, although the line registers.
    std::vector<std::string> notes{};

    bool IsIgnored() const { return reason != Reason::None; }
};

// A whole file. The plugin appends to the file those of its own datarefs that no line declares.
struct ConfigReport {
    std::vector<ConfigLine> lines{};
    std::vector<Declaration> appended{};

    std::size_t IgnoredCount() const;
};

} // namespace orvane::tool::config
