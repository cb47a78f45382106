#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <toml++/toml.h>

#include "tools/orvane/files/Problems.h"

namespace orvane::tool {

// A table of a profile, read key by key. A wrong value is added to the problems and treated as
// missing. Borrows the table and the problems.
class ProfileTable final {
public:
    ProfileTable(const toml::table& table, Problems& problems);

    bool Has(std::string_view key) const;
    std::optional<std::string> String(std::string_view key);
    std::optional<std::int64_t> Integer(std::string_view key, std::int64_t least,
                                        std::int64_t most);
    std::optional<std::int32_t> Int32(std::string_view key);
    // Also accepts whole numbers.
    std::optional<double> Number(std::string_view key, double least, double most);
    std::optional<float> Float(std::string_view key);
    bool Flag(std::string_view key);
    std::optional<ProfileTable> Table(std::string_view key);
    // All tables [[key]].
    std::vector<ProfileTable> Tables(std::string_view key);
    // One of several strings.
    std::optional<std::string> Choice(std::string_view key,
                                      const std::vector<std::string_view>& choices);
    // Two values in brackets.
    std::optional<std::pair<std::int32_t, std::int32_t>> Int32Pair(std::string_view key);
    std::optional<std::pair<float, float>> FloatPair(std::string_view key);
    std::optional<std::pair<std::string, std::string>> StringPair(std::string_view key);
    // At least one number.
    std::optional<std::vector<std::int32_t>> Int32List(std::string_view key);

    // Which one of these keys is given; empty, and a problem, if none or several are.
    std::string_view OneOf(const std::vector<std::string_view>& keys);

    // Adds a problem at the key's value, or where the table begins.
    void AddProblemAt(std::string_view key, const std::string& reason);
    void AddProblem(const std::string& reason);
    // Calls the library; a std::invalid_argument becomes a problem at the key.
    void Try(std::string_view key, const std::function<void()>& step);

    // Adds a problem for keys that are known, but not allowed in this combination.
    void Refuse(const std::vector<std::string_view>& keys, const std::string& reason);
    // Adds a problem for every key that was never asked for.
    void RefuseUnknown();

private:
    const toml::node* find(std::string_view key);
    // What `read` makes of a key's value; if nothing, adds that the value is not what is `wanted`.
    template <typename Read>
    auto get(std::string_view key, Read read, const std::string& wanted);
    template <typename Element, typename Read>
    std::optional<std::pair<Element, Element>> pair(std::string_view key, const char* wanted,
                                                    Read read);

    const toml::table* table;
    Problems* problems;
    std::set<std::string, std::less<>> known;
};

// "float" or "int"; missing is a problem.
std::optional<std::string> readType(ProfileTable& table);
// Whether it is about a command, not about a dataref. Neither and both are problems.
bool isOnCommand(ProfileTable& table);

} // namespace orvane::tool
