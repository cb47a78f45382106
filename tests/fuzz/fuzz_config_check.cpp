// The tool's reader of the configuration file and the plugin's must come to the same result,
// whatever the file holds.

#include <cstdio>
#include <cstdlib>
#include <string>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fuzz/FuzzWorld.h"
#include "support/TemporaryDirectory.h"
#include "tools/orvane/config/ConfigReader.h"
#include "tools/orvane/config/ConfigText.h"

namespace {

namespace config = orvane::tool::config;
using config::DatarefType;

constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

// Larger ones may not fit in memory; only the plugin ignores them then.
constexpr int kLargestSize = 1000;

void require(bool condition, const std::string& what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what.c_str());
        std::abort();
    }
}

XPLMDataTypeID typeOf(DatarefType type) {
    switch (type) {
    case DatarefType::Int:
        return xplmType_Int;
    case DatarefType::Float:
        return xplmType_Float;
    case DatarefType::Double:
        return xplmType_Double;
    case DatarefType::IntArray:
        return xplmType_IntArray;
    case DatarefType::FloatArray:
        return xplmType_FloatArray;
    case DatarefType::ByteArray:
        return xplmType_Data;
    }
    return xplmType_Unknown;
}

bool isModest(const config::ConfigReport& report) {
    for (const config::ConfigLine& line : report.lines) {
        if (line.declared.size > kLargestSize) {
            return false;
        }
    }
    return true;
}

// The refcon of a dataref is its number in the order of registration.
int storedSize(DatarefProvider& provider, DatarefType type, std::uintptr_t number) {
    auto* const refcon = reinterpret_cast<void*>(number);
    return type == DatarefType::IntArray ? provider.GetIntArray(refcon, nullptr, 0, 0)
                                         : provider.GetFloatArray(refcon, nullptr, 0, 0);
}

void compare(FuzzWorld& world, const config::ConfigReport& report, const std::string& text) {
    std::uintptr_t number = 0;
    for (const config::ConfigLine& line : report.lines) {
        if (line.IsIgnored()) {
            continue;
        }
        const char* const name = line.declared.name.c_str();
        const headless::Dataref* const dataref = world.simulator.Datarefs().Lookup(name);
        // The simulator refuses names of its own, which the checker cannot know.
        if (dataref != nullptr && !dataref->IsPluginOwned()) {
            continue;
        }
        ++number;
        require(dataref != nullptr && dataref->Offers(typeOf(line.declared.type)), text);
        const bool hasSize = line.declared.type == DatarefType::IntArray ||
                             line.declared.type == DatarefType::FloatArray;
        require(!hasSize ||
                    storedSize(world.provider, line.declared.type, number) == line.declared.size,
                text);
    }
    // Every registration is in the report.
    world.provider.RegisterInt("the next");
    world.provider.SetInt(reinterpret_cast<void*>(number + 1), 1);
    require(world.provider.GetInt(reinterpret_cast<void*>(number + 1)) == 1, text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string content(data, data + size);
    const config::ConfigReport report = config::readConfig(content);
    const std::string text =
        fmt::format("{}", fmt::join(config::configAsLines(report, "file"), "\n"));
    config::configAsRecords(report, "file");
    if (!isModest(report)) {
        return 0;
    }
    const TemporaryDirectory folder;
    folder.MakePluginsFolder();
    folder.Write(kConfigFile, content);
    FuzzWorld world({});
    world.provider.ParseConfig();
    compare(world, report, text);
    return 0;
}
