#include "tools/orvane/plugin/Status.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "orvane/Errors.h"
#include "orvane/tarnel/Client.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/plugin/LogLines.h"
#include "tools/orvane/plugin/StatusReport.h"
#include "tools/orvane/plugin/TroubleshootingPage.h"

namespace orvane::tool::plugin {

namespace {

bool isThisMachine(const std::string& host) {
    return host == "localhost" || host == "::1" || host.starts_with("127.");
}

std::string textOf(const GlobalOptions& globals, const tarnel::Version& version) {
    return fmt::format("{}:{} answers, version {}, revision {}", globals.host, globals.port,
                       fmt::join(version.parts, "."), version.revision);
}

StatusItem statusOfServer(const GlobalOptions& globals) {
    StatusItem item{.subject = "server", .place = fmt::format("{}:{}", globals.host, globals.port)};
    try {
        tarnel::Client client(globals.ForClient());
        const tarnel::Version version = client.version();
        item.value = fmt::format("{}", fmt::join(version.parts, "."));
        item.text = textOf(globals, version);
    } catch (const CancelledError&) {
        throw;
    } catch (const Error& error) {
        item.text = error.what();
    }
    return item;
}

StatusItems statusOfMachine(const GlobalOptions& globals) {
    if (!isThisMachine(globals.host)) {
        return {};
    }
    StatusItems items = statusOfPort(globals.port);
    items.push_back(statusOfFirewall(globals.port));
    return items;
}

void print(const StatusItem& item) {
    const std::string times = item.count > 1 && item.explanation != nullptr
                                  ? fmt::format(" ({} times; this is the last)", item.count)
                                  : "";
    printLine(fmt::format("{:<11}{}{}", item.subject, item.text, times));
    if (item.explanation != nullptr) {
        printLine(fmt::format("  {:<9}{}", "what", item.explanation->happened));
        printLine(fmt::format("  {:<9}{}", "why", item.explanation->why));
        printLine(fmt::format("  {:<9}{}", "to do", item.explanation->toDo));
    }
}

Record orNull(const std::string& text) {
    return text.empty() ? Record() : Record(text);
}

Record recordOf(const StatusItem& item) {
    Record record{{"subject", item.subject},
                  {"place", orNull(item.place)},
                  {"value", orNull(item.value)},
                  {"text", item.text},
                  {"count", item.count == 0 ? Record() : Record(item.count)}};
    if (item.explanation != nullptr) {
        record["happened"] = item.explanation->happened;
        record["why"] = item.explanation->why;
        record["to_do"] = item.explanation->toDo;
    }
    return record;
}

} // namespace

ExitCode showStatus(const GlobalOptions& globals, const ChosenSimulators& chosen) {
    const std::vector<Explanation> explanations = explanationsOn(troubleshootingPage());
    RecordWriter records(globals.OutputFormat(), {"subject", "place", "value", "text", "count",
                                                  "happened", "why", "to_do"});
    const auto show = [&records](const StatusItems& items) {
        for (const StatusItem& item : items) {
            if (records.IsWanted()) {
                records.Write(recordOf(item));
            } else {
                print(item);
            }
        }
    };
    const auto simulators = chosenToLookAt(chosen);
    if (simulators.empty()) {
        show({{.subject = "simulator", .text = "none is listed in ~/.x-plane; give its folder"}});
    }
    for (const auto& simulator : simulators) {
        show(statusOfSimulator(simulator, explanations));
    }
    show({statusOfServer(globals)});
    show(statusOfMachine(globals));
    return ExitCode::Done;
}

} // namespace orvane::tool::plugin
