#include "headless/host/PluginFinder.h"

#include <filesystem>
#include <optional>

#include "headless/host/PluginError.h"
#include "headless/xplm/utilities/SystemFolder.h"

namespace headless {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSuffix = ".xpl";

bool isFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

// The plugin folder's name, for paths such as "plugins/My/64/lin.xpl"; otherwise the file's.
std::string nameOf(const fs::path& file) {
    const fs::path folder = file.parent_path();
    const std::string inner = folder.filename().string();
    if (inner == "64" || inner == "lin_x64") {
        return folder.parent_path().filename().string();
    }
    return file.stem() == "lin" ? inner : file.stem().string();
}

// Empty if the folder has no plugin for this system.
std::optional<PluginPlace> findInFolder(const fs::path& folder) {
    const std::string name = fs::canonical(folder).filename().string();
    // The newest layout first: a folder may have several, for older simulators.
    for (const fs::path& file : {fs::path("lin_x64") / (name + kSuffix), fs::path("64") / "lin.xpl",
                                 fs::path("lin.xpl"), fs::path(name + kSuffix)}) {
        if (isFile(folder / file)) {
            return PluginPlace{name, (folder / file).string()};
        }
    }
    return std::nullopt;
}

} // namespace

PluginPlace findPlugin(const std::string& path) {
    std::error_code error;
    if (!fs::exists(path, error)) {
        throw PluginError(path + ": there is no such plugin");
    }
    if (!isFolder(path)) {
        return {nameOf(fs::absolute(path)), path};
    }
    if (const auto found = findInFolder(path)) {
        return *found;
    }
    const std::string name = fs::canonical(path).filename().string();
    throw PluginError(path + ": the folder has no plugin: 64/lin.xpl, lin_x64/" + name +
                      ".xpl, lin.xpl or " + name + ".xpl");
}

std::vector<PluginPlace> findPluginsOfSystem(const std::string& system) {
    const fs::path folder = fs::path(system) / "Resources" / "plugins";
    if (!isFolder(folder)) {
        throw PluginError(system + ": not laid out like the simulator's folder: it has no " +
                          "Resources/plugins");
    }
    std::vector<PluginPlace> found;
    for (const std::string& entry : SystemFolder::NamesIn(folder.string())) {
        const fs::path path = folder / entry;
        if (isFolder(path)) {
            if (const auto plugin = findInFolder(path)) {
                found.push_back(*plugin);
            }
        } else if (path.extension() == kSuffix) {
            found.push_back({nameOf(path), path.string()});
        }
    }
    if (found.empty()) {
        throw PluginError(folder.string() + ": the folder has no plugins");
    }
    return found;
}

} // namespace headless
