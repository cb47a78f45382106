#include "tools/orvane/find/NameLists.h"

#include <filesystem>
#include <utility>

#include "headless/lists/CommandsFile.h"
#include "headless/lists/DatarefsFile.h"
#include "tools/orvane/simulators/Simulators.h"

namespace orvane::tool {

namespace {

std::string ifThere(const std::filesystem::path& file) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(file, ignored) ? file.string() : "";
}

std::string arrayOf(std::string element, int elements) {
    return element.append("[").append(std::to_string(elements)).append("]");
}

std::string typeOf(const headless::DatarefDefinition& dataref) {
    if ((dataref.types & xplmType_Double) != 0) {
        return "double";
    }
    switch (dataref.types) {
    case xplmType_Int:
        return "int";
    case xplmType_Float:
        return "float";
    case xplmType_IntArray:
        return arrayOf("int", dataref.elements);
    case xplmType_FloatArray:
        return arrayOf("float", dataref.elements);
    default:
        return arrayOf("byte", dataref.elements);
    }
}

} // namespace

ListFiles installedLists() {
    const ListedSimulators listed = listedSimulators(homeFolder());
    for (const auto& simulator : listed.folders) {
        const auto folder = simulator / "Resources" / "plugins";
        ListFiles files{ifThere(folder / "DataRefs.txt"), ifThere(folder / "Commands.txt")};
        if (!files.IsEmpty()) {
            return files;
        }
    }
    return {};
}

NameLists NameLists::Read(const ListFiles& files) {
    NameLists lists;
    if (!files.datarefs.empty()) {
        auto file = headless::DatarefsFile::Read(files.datarefs);
        for (headless::DatarefDefinition& each : file.definitions) {
            lists.datarefs.push_back({std::move(each.name), typeOf(each), each.elements,
                                      each.writable, std::move(each.units),
                                      std::move(each.description)});
        }
        lists.warnings = std::move(file.warnings);
    }
    if (!files.commands.empty()) {
        for (headless::CommandDefinition& each : headless::readCommandsFile(files.commands)) {
            lists.commands.push_back({std::move(each.name), std::move(each.description)});
        }
    }
    return lists;
}

} // namespace orvane::tool
