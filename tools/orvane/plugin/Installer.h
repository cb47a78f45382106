#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::tool::plugin {

// What became of a file.
struct FileStep {
    // "copied", "kept", "removed" or "left".
    std::string action{};
    std::filesystem::path file{};
};

using FileSteps = std::vector<FileStep>;

// Copies the plugin into a simulator, and removes it. Touches only the plugin's own files in its
// folder, and the configuration file if it is told to remove it; never follows a symbolic link in
// the plugin's place.
class Installer final {
public:
    enum class Mode { Real, DryRun };

    Installer(std::filesystem::path simulator, Mode mode);

    const std::filesystem::path& Simulator() const { return simulator; }

    // Whether a plugin is there, of whatever version.
    bool IsInstalled() const;
    // Empty if there is none.
    std::string InstalledVersion() const;

    // Failure, before anything changes: the plugin's folder is a symbolic link.
    void RequireOwnFolder() const;

    // A simulator that runs keeps what it has loaded: each file is written beside the old one, and
    // then takes its name. Failure: cannot be written.
    FileSteps Install(const std::filesystem::path& plugin) const;

    enum class Configuration { Keep, Remove };
    // Failure: cannot be removed.
    FileSteps Remove(Configuration configuration) const;

private:
    void copy(const std::filesystem::path& from, const std::filesystem::path& to) const;
    bool remove(const std::filesystem::path& file) const;
    void removeIfEmpty(const std::filesystem::path& place) const;
    FileSteps unknownFiles(const FileSteps& known) const;

    const std::filesystem::path simulator;
    const std::filesystem::path folder;
    const Mode mode;
};

} // namespace orvane::tool::plugin
