#pragma once

#include <string>
#include <vector>

namespace headless {

// The simulator's folder: the working directory, unless set otherwise.
class SystemFolder final {
public:
    SystemFolder();

    void Set(const std::string& folder) { path = withSlash(folder); }

    // With a separator at the end.
    const std::string& Path() const { return path; }
    // A file in the preferences folder.
    std::string PreferencesFile() const { return path + "Output/preferences/Set X-Plane.prf"; }
    // The path of a file, which may be relative to this folder.
    std::string Absolute(const std::string& file) const {
        return file.starts_with('/') ? file : path + file;
    }

    // The names in a folder in ascending order; empty if it cannot be read.
    static std::vector<std::string> NamesIn(const std::string& folder);

private:
    static std::string withSlash(const std::string& folder) {
        return folder.ends_with('/') ? folder : folder + '/';
    }

    std::string path;
};

} // namespace headless
