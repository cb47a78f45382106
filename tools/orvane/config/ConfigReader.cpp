#include "tools/orvane/config/ConfigReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <fmt/core.h>

namespace orvane::tool::config {

namespace {

using Fields = std::vector<std::string_view>;

constexpr std::array kTypes = {DatarefType::Int,        DatarefType::Float,
                               DatarefType::Double,     DatarefType::IntArray,
                               DatarefType::FloatArray, DatarefType::ByteArray};

// What the plugin always publishes, after the lines of the file and in this order.
const std::array<Declaration, 4>& ownDatarefs() {
    static const std::array<Declaration, 4> kOwn = {{
        {"kyr/autopilot_external_control", DatarefType::Int, 0},
        {"kyr/autopilot_trigger_disable", DatarefType::Int, 0},
        {"kyr/external_forcescalefactor_active", DatarefType::IntArray, 4},
        {"kyr/external_forcescalefactor_value", DatarefType::IntArray, 4},
    }};
    return kOwn;
}

std::optional<DatarefType> findType(std::string_view word) {
    const auto* const found = std::find_if(
        kTypes.begin(), kTypes.end(), [&](DatarefType type) { return word == typeWord(type); });
    return found != kTypes.end() ? std::optional(*found) : std::nullopt;
}

// Runs of spaces separate fields; trailing spaces leave one empty field at the end.
Fields splitFields(std::string_view text) {
    Fields fields;
    while (true) {
        const std::size_t space = text.find(' ');
        if (space == std::string_view::npos) {
            fields.push_back(text);
            return fields;
        }
        if (space > 0) {
            fields.push_back(text.substr(0, space));
        }
        text.remove_prefix(space + 1);
    }
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r") == std::string_view::npos;
}

std::string quoted(std::string_view text) {
    return fmt::format("\"{}\"", text);
}

// A number of elements as the plugin reads it: white space, a sign and digits; the rest is ignored.
struct SizeField {
    std::errc error{}; // invalid_argument: not a number; result_out_of_range
    int value = 0;
    std::string_view rest{}; // after the digits
};

SizeField readSize(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool isPlus = text.starts_with('+') && !text.starts_with("+-");
    text.remove_prefix(isPlus ? 1 : 0);
    SizeField size;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, size.value);
    size.error = error;
    size.rest = {stopped, end};
    return size;
}

// Checks the lines in order, since earlier ones affect later ones.
class Reader final {
public:
    void Read(std::size_t number, std::string_view text) {
        const std::size_t comment = text.find('#');
        const std::string_view content = text.substr(0, comment);
        if (isBlank(content)) {
            return;
        }
        const bool isCut = comment != std::string_view::npos && content.back() != ' ';
        line = ConfigLine{};
        line.number = number;
        check(splitFields(content), isCut);
        report.lines.push_back(std::move(line));
    }

    ConfigReport Finish() {
        for (const Declaration& own : ownDatarefs()) {
            if (!firstLines.contains(own.name)) {
                report.appended.push_back(own);
            }
        }
        return std::move(report);
    }

private:
    void check(const Fields& fields, bool isCut) {
        const std::string_view typeField = fields.size() > 1 ? fields[1] : std::string_view();
        const std::optional<DatarefType> type = findType(typeField);
        if (!type) {
            ignoreType(fields, typeField, isCut);
            return;
        }
        line.declared.name = fields[0];
        line.declared.type = *type;
        if (isArray(*type) && !readElements(fields, isCut)) {
            return;
        }
        if (declare()) {
            addNotes(fields);
        }
    }

    void ignore(Reason reason, std::string explanation) {
        line.reason = reason;
        line.explanation = std::move(explanation);
    }

    // Says why the second field is not a type: what most likely went wrong.
    void ignoreType(const Fields& fields, std::string_view word, bool isCut) {
        if (isCut) {
            ignore(Reason::CutByComment,
                   fmt::format("the comment sign cuts the line after {}", quoted(fields.back())));
        } else if (fields[0].find('\t') != std::string_view::npos && word.empty()) {
            ignore(Reason::Tab, "tabs do not separate fields; use spaces");
        } else if (word.find('\t') != std::string_view::npos) {
            ignore(Reason::Tab, fmt::format("the tab is part of the type {}", quoted(word)));
        } else if (word.empty()) {
            ignore(Reason::NoType, fmt::format("no type after the name {}", quoted(fields[0])));
        } else if (word.ends_with('\r')) {
            ignore(Reason::CarriageReturn,
                   fmt::format("the carriage return is part of the type {}", quoted(word)));
        } else {
            ignore(Reason::UnknownType, fmt::format("unknown type {}", quoted(word)));
        }
    }

    bool readElements(const Fields& fields, bool isCut) {
        const std::string_view text = fields.size() > 2 ? fields[2] : std::string_view();
        const SizeField size = readSize(text);
        if (isBlank(text)) {
            ignore(isCut ? Reason::CutByComment : Reason::NoSize,
                   fmt::format("no number of elements after {}", fields[1]));
        } else if (size.error == std::errc::invalid_argument) {
            ignore(isCut ? Reason::CutByComment : Reason::SizeNotANumber,
                   fmt::format("{} is not a number", quoted(text)));
        } else if (size.error == std::errc::result_out_of_range) {
            ignore(Reason::SizeTooLarge,
                   fmt::format("the number of elements {} does not fit in 32 bits", quoted(text)));
        } else if (size.value < 1) {
            ignore(Reason::SizeBelowOne,
                   fmt::format("the number of elements {} reads as {}, below 1", quoted(text),
                               size.value));
        }
        line.declared.size = size.value;
        return !line.IsIgnored();
    }

    // The simulator reads a name up to a zero byte. The first declaration of a name counts.
    bool declare() {
        const std::string& name = line.declared.name;
        const std::size_t zero = name.find('\0');
        if (zero != std::string::npos) {
            line.notes.emplace_back("the simulator reads the name up to the zero byte");
        }
        const std::string seen = name.substr(0, zero);
        const auto [first, isNew] = firstLines.emplace(seen, line.number);
        if (!isNew) {
            ignore(Reason::Duplicate,
                   fmt::format("line {} already declares {}", first->second, seen));
        }
        return isNew;
    }

    void addNotes(const Fields& fields) {
        const bool hasSize = isArray(line.declared.type);
        if (line.declared.name.find('\t') != std::string::npos) {
            line.notes.emplace_back("the tab is part of the name");
        }
        if (hasSize && !isBlank(readSize(fields[2]).rest)) {
            line.notes.push_back(fmt::format("the number of elements {} reads as {}",
                                             quoted(fields[2]), line.declared.size));
        }
        const std::size_t used = hasSize ? 3 : 2;
        if (fields.size() > used && !isBlank(fields[used])) {
            line.notes.push_back(
                fmt::format("{} and everything after it is ignored", quoted(fields[used])));
        }
        for (const Declaration& own : ownDatarefs()) {
            if (own.name == line.declared.name && own != line.declared) {
                line.notes.push_back(fmt::format("replaces the plugin's own {}", typeText(own)));
            }
        }
    }

    ConfigReport report;
    ConfigLine line;
    std::map<std::string, std::size_t> firstLines; // by name
};

} // namespace

ConfigReport readConfig(std::string_view content) {
    Reader reader;
    std::size_t number = 0;
    while (!content.empty()) {
        const std::size_t end = std::min(content.find('\n'), content.size());
        reader.Read(++number, content.substr(0, end));
        content.remove_prefix(std::min(end + 1, content.size()));
    }
    return reader.Finish();
}

} // namespace orvane::tool::config
