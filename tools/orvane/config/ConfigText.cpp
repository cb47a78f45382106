#include "tools/orvane/config/ConfigText.h"

#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

namespace orvane::tool::config {

namespace {

using Json = nlohmann::ordered_json;

std::string typeAndName(const Declaration& declared) {
    const std::string word = typeWord(declared.type);
    const std::string name = printable(declared.name);
    return isArray(declared.type) ? fmt::format("{}[{}] {}", word, declared.size, name)
                                  : fmt::format("{} {}", word, name);
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

std::string configAsText(const ConfigReport& report, const std::string& file) {
    std::string text;
    for (const ConfigLine& line : report.lines) {
        text += fmt::format("{}:{}: {}\n", file, line.number, verdictOf(line));
    }
    for (const Declaration& declared : report.appended) {
        text += fmt::format("{}: appended by the plugin: {}\n", file, typeAndName(declared));
    }
    const std::size_t ignored = report.IgnoredCount();
    return text + fmt::format("{}: {} registered, {} ignored, {} appended\n", file,
                              report.lines.size() - ignored, ignored, report.appended.size());
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
