#include "tools/orvane/drive/ProfileTable.h"

#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

namespace orvane::tool {

namespace {

constexpr const char* kInt32 = "a whole number from -2147483648 to 2147483647";
constexpr const char* kFloat = "a number that a float can hold";

std::optional<std::int64_t> integerOf(const toml::node& node, std::int64_t least,
                                      std::int64_t most) {
    const auto* const number = node.as_integer();
    const bool fits = number != nullptr && number->get() >= least && number->get() <= most;
    return fits ? std::optional(number->get()) : std::nullopt;
}

std::optional<std::int32_t> int32Of(const toml::node& node) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto number = integerOf(node, Limits::min(), Limits::max());
    return number ? std::optional(static_cast<std::int32_t>(*number)) : std::nullopt;
}

std::optional<double> numberOf(const toml::node& node) {
    return node.is_number() ? node.value<double>() : std::nullopt;
}

std::optional<float> floatOf(const toml::node& node) {
    const std::optional<double> number = numberOf(node);
    constexpr double kMax = std::numeric_limits<float>::max();
    if (!number || !(std::abs(*number) <= kMax)) {
        return std::nullopt;
    }
    return static_cast<float>(*number);
}

std::optional<std::string> stringOf(const toml::node& node) {
    return node.value_exact<std::string>();
}

} // namespace

std::optional<std::string> readType(ProfileTable& table) {
    if (!table.Has("type")) {
        table.AddProblem("\"type\" is missing: \"float\" or \"int\"");
    }
    return table.Choice("type", {"float", "int"});
}

bool isOnCommand(ProfileTable& table) {
    const std::string_view kind = table.OneOf({"dataref", "command"});
    return kind.empty() ? table.Has("command") : kind == "command";
}

ProfileTable::ProfileTable(const toml::table& table, Problems& problems)
    : table(&table), problems(&problems) {}

bool ProfileTable::Has(std::string_view key) const {
    return table->contains(key);
}

const toml::node* ProfileTable::find(std::string_view key) {
    known.emplace(key);
    return table->get(key);
}

template <typename Read>
auto ProfileTable::get(std::string_view key, Read read, const std::string& wanted) {
    const toml::node* const node = find(key);
    auto value = node == nullptr ? decltype(read(*node))() : read(*node);
    if (node != nullptr && !value) {
        AddProblemAt(key, fmt::format("\"{}\" is not {}", key, wanted));
    }
    return value;
}

std::optional<std::string> ProfileTable::String(std::string_view key) {
    return get(key, stringOf, "a string in quotes");
}

std::optional<std::int64_t> ProfileTable::Integer(std::string_view key, std::int64_t least,
                                                  std::int64_t most) {
    return get(
        key, [=](const toml::node& node) { return integerOf(node, least, most); },
        fmt::format("a whole number from {} to {}", least, most));
}

std::optional<std::int32_t> ProfileTable::Int32(std::string_view key) {
    return get(key, int32Of, kInt32);
}

std::optional<double> ProfileTable::Number(std::string_view key, double least, double most) {
    const auto read = [=](const toml::node& node) {
        const std::optional<double> number = numberOf(node);
        return number && *number >= least && *number <= most ? number : std::nullopt;
    };
    return get(key, read, fmt::format("a number from {} to {}", least, most));
}

std::optional<float> ProfileTable::Float(std::string_view key) {
    return get(key, floatOf, kFloat);
}

bool ProfileTable::Flag(std::string_view key) {
    const toml::node* const node = find(key);
    if (node != nullptr && !node->is_boolean()) {
        AddProblemAt(key, fmt::format("\"{}\" is neither true nor false", key));
    }
    return node != nullptr && node->value_exact<bool>().value_or(false);
}

std::optional<ProfileTable> ProfileTable::Table(std::string_view key) {
    const auto read = [this](const toml::node& node) {
        return node.is_table() ? std::optional(ProfileTable(*node.as_table(), *problems))
                               : std::nullopt;
    };
    return get(key, read, "a table");
}

std::vector<ProfileTable> ProfileTable::Tables(std::string_view key) {
    const toml::node* const node = find(key);
    std::vector<ProfileTable> tables;
    if (node == nullptr) {
        return tables;
    }
    const toml::array* const array = node->as_array();
    if (array == nullptr) {
        AddProblemAt(key, fmt::format("\"{}\" is not a list: write [[{}]]", key, key));
        return tables;
    }
    for (const toml::node& element : *array) {
        if (element.is_table()) {
            tables.emplace_back(*element.as_table(), *problems);
        } else {
            const toml::source_position place = element.source().begin;
            problems->push_back({place.line, place.column,
                                 fmt::format("an element of \"{}\" is not a table", key)});
        }
    }
    return tables;
}

std::optional<std::string> ProfileTable::Choice(std::string_view key,
                                                const std::vector<std::string_view>& choices) {
    std::optional<std::string> text = String(key);
    if (!text) {
        return std::nullopt;
    }
    for (const std::string_view choice : choices) {
        if (*text == choice) {
            return text;
        }
    }
    AddProblemAt(
        key, fmt::format("\"{}\" is \"{}\"; it can be {}", key, *text, fmt::join(choices, " or ")));
    return std::nullopt;
}

template <typename Element, typename Read>
std::optional<std::pair<Element, Element>> ProfileTable::pair(std::string_view key,
                                                              const char* wanted, Read read) {
    const toml::node* const node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    const toml::array* const array = node->as_array();
    if (array == nullptr || array->size() != 2) {
        AddProblemAt(key, fmt::format("\"{}\" is not a list of two", key));
        return std::nullopt;
    }
    const std::optional<Element> first = read(*array->get(0));
    const std::optional<Element> second = read(*array->get(1));
    if (!first || !second) {
        AddProblemAt(key, fmt::format("\"{}\" has an element that is not {}", key, wanted));
        return std::nullopt;
    }
    return std::pair(*first, *second);
}

std::optional<std::pair<std::int32_t, std::int32_t>> ProfileTable::Int32Pair(std::string_view key) {
    return pair<std::int32_t>(key, kInt32, int32Of);
}

std::optional<std::pair<float, float>> ProfileTable::FloatPair(std::string_view key) {
    return pair<float>(key, kFloat, floatOf);
}

std::optional<std::pair<std::string, std::string>> ProfileTable::StringPair(std::string_view key) {
    return pair<std::string>(key, "a string in quotes", stringOf);
}

std::optional<std::vector<std::int32_t>> ProfileTable::Int32List(std::string_view key) {
    const toml::node* const node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    const toml::array* const array = node->as_array();
    if (array == nullptr || array->empty()) {
        AddProblemAt(key, fmt::format("\"{}\" is not a list of whole numbers", key));
        return std::nullopt;
    }
    std::vector<std::int32_t> numbers;
    for (const toml::node& element : *array) {
        const std::optional<std::int32_t> number = int32Of(element);
        if (!number) {
            AddProblemAt(key, fmt::format("\"{}\" has an element that is not {}", key, kInt32));
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    return numbers;
}

std::string_view ProfileTable::OneOf(const std::vector<std::string_view>& keys) {
    std::string_view found;
    for (const std::string_view key : keys) {
        known.emplace(key);
        if (Has(key) && !found.empty()) {
            AddProblemAt(key, fmt::format("\"{}\" and \"{}\" exclude each other", found, key));
            return {};
        }
        found = Has(key) ? key : found;
    }
    if (found.empty()) {
        AddProblem(fmt::format("one of \"{}\" is missing", fmt::join(keys, "\", \"")));
    }
    return found;
}

void ProfileTable::AddProblemAt(std::string_view key, const std::string& reason) {
    const toml::node* const node = table->get(key);
    const toml::source_position place = (node == nullptr ? *table : *node).source().begin;
    problems->push_back({place.line, place.column, reason});
}

void ProfileTable::AddProblem(const std::string& reason) {
    const toml::source_position place = table->source().begin;
    problems->push_back({place.line, place.column, reason});
}

void ProfileTable::Try(std::string_view key, const std::function<void()>& step) {
    try {
        step();
    } catch (const std::invalid_argument& refused) {
        AddProblemAt(key, refused.what());
    }
}

void ProfileTable::Refuse(const std::vector<std::string_view>& keys, const std::string& reason) {
    for (const std::string_view key : keys) {
        if (find(key) != nullptr) {
            AddProblemAt(key, fmt::format("\"{}\" {}", key, reason));
        }
    }
}

void ProfileTable::RefuseUnknown() {
    for (const auto& [key, node] : *table) {
        if (!known.contains(key.str())) {
            const toml::source_position place = key.source().begin;
            problems->push_back(
                {place.line, place.column, fmt::format("unknown key \"{}\"", key.str())});
        }
    }
}

} // namespace orvane::tool
