#pragma once

#include <filesystem>
#include <string>

// A new empty directory that is the process's working directory while the object lives, and is
// removed with everything in it afterwards. MakePluginsFolder adds the simulator's folders.
class TemporaryDirectory final {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& Path() const { return path; }
    // The absolute path of a file in it.
    std::string Path(const std::string& relativePath) const;

    // ./Resources/plugins, in which the configuration file lives.
    void MakePluginsFolder() const;
    // Returns the absolute path.
    std::string Write(const std::string& relativePath, const std::string& content) const;
    // The whole content; throws when there is no such file.
    std::string Read(const std::string& relativePath) const;
    bool Has(const std::string& relativePath) const;

private:
    std::filesystem::path former;
    std::filesystem::path path;
};
