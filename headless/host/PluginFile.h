#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace headless {

// A plugin's file as the system's loader will see it, read without running any of its code.
//
// Nothing is known of a file without section headers: it is left to the loader.
class PluginFile final {
public:
    // Throws PluginError when the file cannot be read, is not a shared library, or is one for
    // another kind of computer.
    explicit PluginFile(const std::string& path);

    const std::string& Path() const { return path; }
    // Names that must be found in other libraries, in any version. Those that ask for a version of
    // a library's are left to the loader.
    const std::vector<std::string>& Undefined() const { return undefined; }
    // Libraries that the file asks for by name.
    const std::vector<std::string>& Needed() const { return needed; }
    // Folders in which it wants them to be looked for first, with $ORIGIN filled in.
    const std::vector<std::string>& RunPath() const { return runPath; }
    // Whether the text is anywhere in the file, as a name is that the plugin looks up itself.
    bool Mentions(std::string_view text) const { return content.find(text) != std::string::npos; }

private:
    void requireUsable() const;
    // The system would end the process when it reads what is missing.
    void requireWhole() const;
    void readDynamicSections();
    void readSymbols(std::string_view symbols, std::string_view strings, std::string_view versions);
    void readEntries(std::string_view entries, std::string_view strings);
    void addRunPath(const std::string& folders);
    // A section of the file by its index; empty when there is no such section.
    std::string_view section(std::size_t index) const;
    std::string_view sectionOfType(std::uint32_t type) const;

    std::string path;
    std::string content;
    std::vector<std::string> undefined;
    std::vector<std::string> needed;
    std::vector<std::string> runPath;
};

} // namespace headless
