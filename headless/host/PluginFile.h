#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace headless {

// A plugin's file as the system's loader will see it, read without running any of its code.
//
// A file without section headers cannot be inspected; the loader then checks it.
class PluginFile final {
public:
    // Throws PluginError if the file cannot be read, is not a shared library, or is for another
    // kind of computer.
    explicit PluginFile(const std::string& path);

    const std::string& Path() const { return path; }
    // Undefined names, without a version, that other libraries must have. Names that ask for a
    // certain version of a library are left to the loader.
    const std::vector<std::string>& Undefined() const { return undefined; }
    // Libraries that the file asks for by name.
    const std::vector<std::string>& Needed() const { return needed; }
    // Folders to search for libraries first, with $ORIGIN expanded.
    const std::vector<std::string>& RunPath() const { return runPath; }
    // Whether the text appears anywhere in the file, as do names that the plugin looks up itself.
    bool Mentions(std::string_view text) const { return content.find(text) != std::string::npos; }

private:
    void requireUsable() const;
    // Loading a truncated file would crash the process.
    void requireWhole() const;
    void readDynamicSections();
    void readSymbols(std::string_view symbols, std::string_view strings, std::string_view versions);
    void readEntries(std::string_view entries, std::string_view strings);
    void addRunPath(const std::string& folders);
    // A section of the file by its index; empty if it does not exist.
    std::string_view section(std::size_t index) const;
    std::string_view sectionOfType(std::uint32_t type) const;

    std::string path;
    std::string content;
    std::vector<std::string> undefined;
    std::vector<std::string> needed;
    std::vector<std::string> runPath;
};

// The plugin and the libraries that it brings along: those that it needs and that are in the
// folders of its run path, and those that they need.
std::vector<PluginFile> withOwnLibraries(const PluginFile& plugin);

} // namespace headless
