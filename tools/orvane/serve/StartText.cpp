#include "tools/orvane/serve/StartText.h"

#include <algorithm>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/files/RecordWriter.h"

namespace orvane::tool {

namespace {

std::string argumentOf(const tarnel::Output& output) {
    const bool isInt =
        output.type() == tarnel::OutputType::Int || output.type() == tarnel::OutputType::IntArray;
    const bool isArray = output.type() == tarnel::OutputType::IntArray ||
                         output.type() == tarnel::OutputType::FloatArray;
    const char* const type = isInt ? "int" : "float";
    if (!isArray) {
        return fmt::format("{}:{}", output.name(), type);
    }
    const std::int32_t first = output.firstElement();
    return first == 0
               ? fmt::format("{}:{}[{}]", output.name(), type, output.count())
               : fmt::format("{}[{}:{}]:{}", output.name(), first, first + output.count(), type);
}

} // namespace

// A name that cannot be read together with those before it is left out: profiles may read an array
// as a whole and by elements.
void StartText::AddName(const std::string& text) {
    std::vector<std::string> more = names;
    more.push_back(text);
    try {
        parseDatarefArguments(more);
        names = std::move(more);
    } catch (const Failure&) {
        return;
    }
}

void StartText::AddCommand(const std::string& name) {
    if (std::find(commands.begin(), commands.end(), name) == commands.end()) {
        commands.push_back(name);
    }
}

void StartText::Add(const Profile& profile) {
    addInputs(profile);
    const std::vector<tarnel::Output>& outputs = profile.definitions.outputs();
    for (const tarnel::Output& output : outputs) {
        const auto named =
            std::find_if(profile.outputs.begin(), profile.outputs.end(),
                         [&](const ProfileOutput& each) { return each.id == output.id(); });
        addOutput(output, named == profile.outputs.end() ? "" : named->unit);
    }
}

void StartText::addInputs(const Profile& profile) {
    for (const tarnel::Input& input : profile.definitions.inputs()) {
        const auto named =
            std::find_if(profile.inputs.begin(), profile.inputs.end(),
                         [&](const ProfileInput& each) { return each.action == input.action(); });
        if (named != profile.inputs.end() && named->isCommand) {
            AddCommand(input.target());
        } else if (named != profile.inputs.end()) {
            const std::string element = named->element ? fmt::format("[{}]", input.element()) : "";
            const std::string argument = input.target() + element + (named->isAxis ? ":float" : "");
            AddName(argument);
            axes.push_back({named->name, argument, named->mapping});
        }
    }
}

void StartText::addOutput(const tarnel::Output& output, const std::string& unit) {
    if (output.type() == tarnel::OutputType::Command) {
        AddCommand(output.name());
    } else {
        AddName(argumentOf(output) + (unit.empty() ? "" : "@" + unit));
    }
}

std::string StartText::Text(const std::string& place, bool isReplay) const {
    Record axisRecords = Record::array();
    for (const Axis& axis : axes) {
        axisRecords.push_back(
            {{"name", axis.name}, {"argument", axis.argument}, {"mapping", axis.mapping}});
    }
    return jsonText({{"place", place},
                     {"replay", isReplay},
                     {"names", names},
                     {"commands", commands},
                     {"axes", axisRecords}});
}

} // namespace orvane::tool
