#include "tools/orvane/drive/ProfileReader.h"

#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <fmt/core.h>

#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/drive/InputNames.h"
#include "tools/orvane/drive/ProfileInputTable.h"
#include "tools/orvane/drive/ProfileOutputTable.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

namespace {

constexpr double kSlowestRate = 0.01;
constexpr double kFastestRate = 1000;
constexpr std::int64_t kHighestPort = 65535;
// Of an answer, framing included. Larger ones come near to what the server can hold.
constexpr std::size_t kLargestAnswer = std::size_t{64} << 20U;
constexpr tarnel::OutputId kAircraft = 0xFFFF;

// Reads the parts of one profile into it.
class Reader final {
public:
    Reader(const toml::table& root, Problems& problems)
        : root(root, problems), problems(problems) {}

    Profile Read() {
        readConnection();
        const std::vector<ProfileTable> inputs = root.Tables("input");
        const std::vector<ProfileTable> outputs = root.Tables("output");
        root.RefuseUnknown();
        if (!root.Has("input") && !root.Has("output")) {
            problems.push_back({1, 1, "the profile has neither inputs nor outputs"});
        }
        readInputs(inputs);
        readOutputs(outputs);
        return std::move(profile);
    }

private:
    void readConnection();
    void readInputs(std::vector<ProfileTable> tables);
    void addInput(ProfileInput& entry, const ProfileTable& table);
    static void describe(ProfileInput& entry, const ProfileRecord& record);
    void readOutputs(std::vector<ProfileTable> tables);
    void addOutput(ProfileTable& table);

    ProfileTable root;
    Problems& problems;
    Profile profile;
    // What each action writes to, and the names of outputs, to find duplicates.
    std::set<std::tuple<tarnel::ActionId, std::string, std::int32_t>> targets;
    std::set<std::string> outputNames;
    tarnel::OutputId nextOutput = 1;
};

void Reader::readConnection() {
    std::optional<ProfileTable> connection = root.Table("connection");
    if (!connection) {
        return;
    }
    profile.host = connection->String("host");
    if (profile.host && profile.host->empty()) {
        connection->AddProblemAt("host", "\"host\" is empty");
    }
    if (const auto port = connection->Integer("port", 1, kHighestPort)) {
        profile.port = static_cast<std::uint16_t>(*port);
    }
    profile.rate =
        connection->Number("rate", kSlowestRate, kFastestRate).value_or(Profile::kDefaultRate);
    connection->RefuseUnknown();
}

void Reader::readInputs(std::vector<ProfileTable> tables) {
    InputNames names;
    for (ProfileTable& table : tables) {
        names.Read(table);
    }
    names.AssignFreeNumbers();
    for (const InputNames::Entry& entry : names.Entries()) {
        profile.inputs.push_back({entry.name, entry.action.value_or(0), true});
    }
    ProfileInput nameless;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        const std::optional<std::size_t> position = names.Positions()[i];
        addInput(position ? profile.inputs[*position] : nameless, tables[i]);
    }
}

void Reader::addInput(ProfileInput& entry, const ProfileTable& table) {
    const std::optional<ProfileRecord> record = readProfileInput(table, entry.action);
    if (!record) {
        return;
    }
    const tarnel::Input& input = record->input;
    const auto [known, isNew] = targets.emplace(entry.action, input.target(), input.element());
    if (!isNew && !entry.name.empty()) {
        ProfileTable(table).AddProblem(
            fmt::format("\"{}\" already drives {}", entry.name, input.target()));
    }
    entry.isAxis = entry.isAxis && record->isAxis;
    if (entry.motion && record->motion) {
        ProfileTable(table).AddProblem(fmt::format("\"{}\" already moves", entry.name));
    }
    entry.motion = record->motion ? record->motion : entry.motion;
    describe(entry, *record);
    profile.definitions.add(input);
    for (ExpectedName name : record->names) {
        name.user = fmt::format("input \"{}\"", entry.name);
        profile.expectedNames.push_back(std::move(name));
    }
}

// Fills in what the table of a session shows.
void Reader::describe(ProfileInput& entry, const ProfileRecord& record) {
    const bool isCommand = record.names.front().isCommand;
    const bool isFirst = entry.mapping.empty();
    entry.isCommand = isCommand && (isFirst || entry.isCommand);
    entry.isHeld = entry.isHeld || record.isHeldCommand;
    entry.element = isFirst ? record.element : entry.element;
    entry.mapping += (isFirst ? "" : "; ") + record.mapping;
}

void Reader::readOutputs(std::vector<ProfileTable> tables) {
    for (ProfileTable& table : tables) {
        addOutput(table);
    }
}

void Reader::addOutput(ProfileTable& table) {
    const std::optional<std::string> name = readColumnName(table);
    if (name && !outputNames.insert(*name).second) {
        table.AddProblemAt("name", fmt::format("there is already an output \"{}\"", *name));
    }
    const std::string unit = table.String("unit").value_or("");
    const tarnel::OutputId id = nextOutput++;
    nextOutput += nextOutput == kAircraft ? 1 : 0;
    const std::optional<tarnel::Output> output = readProfileOutput(table, id);
    if (!output) {
        return;
    }
    table.Try("command", [&] { profile.definitions.add(*output); });
    if (profile.definitions.answerSize() > kLargestAnswer) {
        table.AddProblem("with this output the answers exceed 64 MiB");
    }
    profile.outputs.push_back({name.value_or(""), id, unit});
    if (!isOwnName(output->name())) {
        const std::string user = fmt::format("output \"{}\"", name.value_or(""));
        profile.expectedNames.push_back({output->name(), false, user});
    }
}

} // namespace

Profile readProfile(std::string_view text, Problems& problems) {
    try {
        const toml::table root = toml::parse(text);
        return Reader(root, problems).Read();
    } catch (const toml::parse_error& error) {
        const toml::source_position place = error.source().begin;
        problems.push_back({place.line, place.column, std::string(error.description())});
        return {};
    }
}

} // namespace orvane::tool
