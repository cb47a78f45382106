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

std::optional<std::int32_t> int32Of(const toml::node& node) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto* const number = node.as_integer();
    if (number == nullptr || number->get() < Limits::min() || number->get() > Limits::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(number->get());
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

ProfileTable::ProfileTable(const toml::table& table, Problems& problems)
    : table(&table), problems(&problems) {}

bool ProfileTable::Has(std::string_view key) const {
    return table->contains(key);
}

const toml::node* ProfileTable::find(std::string_view key) {
    known.emplace(key);
    return table->get(key);
}

std::optional<std::string> ProfileTable::String(std::string_view key) {
    const toml::node* const node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    std::optional<std::string> text = stringOf(*node);
    if (!text) {
        AddProblemAt(key, fmt::format("\"{}\" is not a string in quotes", key));
    }
    return text;
}

std::optional<std::int64_t> ProfileTable::Integer(std::string_view key, std::int64_t least,
                                                  std::int64_t most) {
    const toml::node* const node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    const auto* const number = node->as_integer();
    if (number == nullptr || number->get() < least || number->get() > most) {
        AddProblemAt(key,
                     fmt::format("\"{}\" is not a whole number from {} to {}", key, least, most));
        return std::nullopt;
    }
    return number->get();
}

std::optional<std::int32_t> ProfileTable::Int32(std::string_view key) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto number = Integer(key, Limits::min(), Limits::max());
    return number ? std::optional(static_cast<std::int32_t>(*number)) : std::nullopt;
}

std::optional<double> ProfileTable::Number(std::string_view key, double least, double most) {
    const toml::node* const node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    const std::optional<double> number = numberOf(*node);
    if (!number || !(*number >= least && *number <= most)) {
        AddProblemAt(key, fmt::format("\"{}\" is not a number from {} to {}", key, least, most));
        return std::nullopt;
    }
    return number;
}

std::optional<float> ProfileTable::Float(std::string_view key) {
    const toml::node* const node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    const std::optional<float> number = floatOf(*node);
    if (!number) {
        AddProblemAt(key, fmt::format("\"{}\" is not {}", key, kFloat));
    }
    return number;
}

bool ProfileTable::Flag(std::string_view key) {
    const toml::node* const node = find(key);
    if (node != nullptr && !node->is_boolean()) {
        AddProblemAt(key, fmt::format("\"{}\" is neither true nor false", key));
    }
    return node != nullptr && node->value_exact<bool>().value_or(false);
}

std::optional<ProfileTable> ProfileTable::Table(std::string_view key) {
    const toml::node* const node = find(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    if (!node->is_table()) {
        AddProblemAt(key, fmt::format("\"{}\" is not a table", key));
        return std::nullopt;
    }
    return ProfileTable(*node->as_table(), *problems);
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
