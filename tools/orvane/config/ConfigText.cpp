#include "tools/orvane/config/ConfigText.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace orvane::tool::config {

namespace {

using Json = nlohmann::ordered_json;

std::string typeAndName(const Declaration& declared) {
    return typeText(declared) + " " + declared.name;
}

std::string joinNotes(const ConfigLine& line) {
    return fmt::format("{}", fmt::join(line.notes, "; "));
}

std::string verdictOf(const ConfigLine& line) {
    if (line.IsIgnored()) {
        return "ignored: " + line.explanation;
    }
    const std::string text = "registers " + typeAndName(line.declared);
    return line.notes.empty() ? text : fmt::format("{} ({})", text, joinNotes(line));
}

void addDeclaration(Json& object, const Declaration& declared) {
    object["type"] = typeWord(declared.type);
    object["name"] = declared.name;
    if (isArray(declared.type)) {
        object["elements"] = declared.size;
    }
}

Json lineAsRecord(const ConfigLine& line, const std::string& file) {
    Json object = {{"file", file}, {"line", line.number}};
    if (line.IsIgnored()) {
        object["verdict"] = "ignored";
        object["reason"] = reasonWord(line.reason);
        object["text"] = line.explanation;
        return object;
    }
    object["verdict"] = "registers";
    addDeclaration(object, line.declared);
    if (!line.notes.empty()) {
        object["text"] = joinNotes(line);
    }
    return object;
}

} // namespace

std::vector<std::string> configAsLines(const ConfigReport& report, const std::string& file) {
    std::vector<std::string> lines;
    for (const ConfigLine& line : report.lines) {
        lines.push_back(fmt::format("{}:{}: {}", file, line.number, verdictOf(line)));
    }
    for (const Declaration& declared : report.appended) {
        lines.push_back(fmt::format("{}: appended by the plugin: {}", file, typeAndName(declared)));
    }
    const std::size_t ignored = report.IgnoredCount();
    lines.push_back(fmt::format("{}: {} registered, {} ignored, {} appended", file,
                                report.lines.size() - ignored, ignored, report.appended.size()));
    return lines;
}

std::vector<Json> configAsRecords(const ConfigReport& report, const std::string& file) {
    std::vector<Json> records;
    for (const ConfigLine& line : report.lines) {
        records.push_back(lineAsRecord(line, file));
    }
    for (const Declaration& declared : report.appended) {
        Json& record = records.emplace_back(Json{{"file", file}, {"verdict", "appended"}});
        addDeclaration(record, declared);
    }
    return records;
}

std::vector<std::string> configColumns() {
    return {"file", "line", "verdict", "type", "name", "elements", "reason", "text"};
}

} // namespace orvane::tool::config
