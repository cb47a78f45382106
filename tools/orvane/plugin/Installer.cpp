#include "tools/orvane/plugin/Installer.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/plugin/PluginFiles.h"

namespace orvane::tool::plugin {

namespace {

namespace fs = std::filesystem;

// What the folder of a plugin from us may have.
constexpr std::array<const char*, 4> kOwnFiles{kPluginFile, "LICENSE.txt", "README.txt",
                                               "orvane.lua"};
constexpr const char* kSubfolder = "64";
constexpr const char* kBesideSuffix = ".orvane-new";

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// `copy_file` calls it an input/output error if the disk is full after a part of the file.
std::error_code reasonFor(const std::error_code& error, const fs::path& file) {
    std::error_code ignored;
    const bool isFull = error == std::errc::io_error && fs::space(file, ignored).available == 0;
    return isFull ? std::make_error_code(std::errc::no_space_on_device) : error;
}

[[noreturn]] void failOn(const fs::path& path, const std::error_code& error) {
    throw Failure(ExitCode::WrongUsage, fmt::format("{}: {}", path.string(), error.message()));
}

fs::path beside(const fs::path& file) {
    return file.string() + kBesideSuffix;
}

} // namespace

Installer::Installer(fs::path simulator, Mode mode)
    : simulator(std::move(simulator)), folder(this->simulator / kPluginFolder), mode(mode) {}

bool Installer::IsInstalled() const {
    return isThere(folder / kPluginFile);
}

std::string Installer::InstalledVersion() const {
    if (!IsInstalled()) {
        return "";
    }
    return pluginVersionOf(folder / kPluginFile).value_or("another file");
}

void Installer::RequireOwnFolder() const {
    for (const fs::path& place : {folder, folder / kSubfolder}) {
        std::error_code ignored;
        if (fs::is_symlink(place, ignored)) {
            throw Failure(ExitCode::WrongUsage,
                          fmt::format("{} is a symbolic link, which this command does not follow; "
                                      "remove the link first",
                                      place.string()));
        }
    }
}

FileSteps Installer::Install(const fs::path& plugin) const {
    FileSteps steps;
    for (const char* const name : kOwnFiles) {
        if (isThere(plugin / name)) {
            copy(plugin / name, folder / name);
            steps.push_back({"copied", folder / name});
        }
    }
    if (isThere(simulator / kConfiguration)) {
        steps.push_back({"kept", simulator / kConfiguration});
    }
    return steps;
}

void Installer::copy(const fs::path& from, const fs::path& to) const {
    if (mode == Mode::DryRun) {
        return;
    }
    std::error_code error;
    fs::create_directories(to.parent_path(), error);
    if (error) {
        failOn(to.parent_path(), error);
    }
    const fs::path whole = beside(to);
    fs::remove(whole, error);
    if (fs::copy_file(from, whole, error)) {
        fs::rename(whole, to, error);
    }
    if (error) {
        const std::error_code reason = reasonFor(error, whole);
        std::error_code ignored;
        fs::remove(whole, ignored);
        failOn(to, reason);
    }
}

FileSteps Installer::Remove(Configuration configuration) const {
    FileSteps steps;
    for (const char* const name : kOwnFiles) {
        // Also what an install left that was cut off.
        for (const fs::path& file : {folder / name, beside(folder / name)}) {
            if (remove(file)) {
                steps.push_back({"removed", file});
            }
        }
    }
    const FileSteps unknown = unknownFiles(steps);
    steps.insert(steps.end(), unknown.begin(), unknown.end());
    removeIfEmpty(folder / kSubfolder);
    removeIfEmpty(folder);
    const fs::path file = simulator / kConfiguration;
    if (configuration == Configuration::Remove && remove(file)) {
        steps.push_back({"removed", file});
    } else if (configuration == Configuration::Keep && isThere(file)) {
        steps.push_back({"kept", file});
    }
    return steps;
}

// Whether it was there. Of a symbolic link it removes the link.
bool Installer::remove(const fs::path& file) const {
    if (mode == Mode::DryRun || !isThere(file)) {
        return isThere(file);
    }
    std::error_code error;
    const bool wasThere = fs::remove(file, error);
    if (error) {
        failOn(file, error);
    }
    return wasThere;
}

void Installer::removeIfEmpty(const fs::path& place) const {
    if (mode == Mode::Real) {
        ::rmdir(place.c_str());
    }
}

FileSteps Installer::unknownFiles(const FileSteps& known) const {
    FileSteps left;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder, ignored)) {
        const bool isKnown = std::any_of(known.begin(), known.end(), [&](const FileStep& step) {
            return step.file == entry.path();
        });
        const bool isFolder = fs::is_directory(entry.symlink_status(ignored));
        if (!isKnown && !isFolder) {
            left.push_back({"left", entry.path()});
        }
    }
    std::sort(left.begin(), left.end(),
              [](const FileStep& a, const FileStep& b) { return a.file < b.file; });
    return left;
}

} // namespace orvane::tool::plugin
