#include "tools/orvane/serve/RequestBody.h"

#include <set>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/serve/RequestCheck.h"
#include "tools/orvane/terminal/PrintableText.h"

namespace orvane::tool {

namespace {

using nlohmann::json;

constexpr std::size_t kLongestText = 1024;

[[noreturn]] void refuse(const std::string& reason) {
    throw Failure(ExitCode::WrongUsage, reason);
}

json parseObject(std::string_view body) {
    json object = json::parse(body, nullptr, false);
    if (!object.is_object()) {
        refuse("not an object of JSON");
    }
    return object;
}

std::string textIn(const json& value, const char* what) {
    if (!value.is_string()) {
        refuse(fmt::format("\"{}\" is not a text", what));
    }
    std::string text = value.get<std::string>();
    if (text.empty() || text.size() > kLongestText || hasControls(text)) {
        refuse(fmt::format("\"{}\" is empty, too long, or not plain text", what));
    }
    return text;
}

std::string textOf(const json& object, const char* key) {
    const auto found = object.find(key);
    return textIn(found == object.end() ? json() : *found, key);
}

std::vector<std::string> textsOf(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_array() || found->size() > kMostNames) {
        refuse(fmt::format("\"{}\" is not an array of at most {} texts", key, kMostNames));
    }
    std::vector<std::string> texts;
    for (const json& each : *found) {
        texts.push_back(textIn(each, key));
    }
    return texts;
}

std::string idOf(const json& object) {
    std::string id = textOf(object, "id");
    if (!isPageId(id)) {
        refuse("\"id\" is not 16 to 64 letters and digits");
    }
    return id;
}

const std::string& checkedCommand(const std::string& name) {
    constexpr std::size_t kLongestName = 255;
    if (name.size() > kLongestName) {
        refuse(fmt::format("a command's name has at most {} characters", kLongestName));
    }
    return name;
}

} // namespace

Wanted parseWanted(std::string_view body) {
    const json object = parseObject(body);
    Wanted wanted{idOf(object), parseDatarefArguments(textsOf(object, "names")),
                  textsOf(object, "commands")};
    std::set<std::string_view> seen;
    for (const std::string& command : wanted.commands) {
        if (!seen.insert(checkedCommand(command)).second) {
            refuse(fmt::format("{}: named twice", command));
        }
    }
    return wanted;
}

Assignment parseSet(std::string_view body) {
    return makeAssignment(parseAssignment(textOf(parseObject(body), "assignment")));
}

CommandRequest parseCommand(std::string_view body) {
    const json object = parseObject(body);
    return {idOf(object), checkedCommand(textOf(object, "command"))};
}

} // namespace orvane::tool
