#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "headless/host/PluginFile.h"

namespace headless {

// Lists what a plugin needs, with the libraries that it brings along, and whether it is available.
// Provides OpenGL and loads the libraries that the plugin asks for, but not the plugin itself.
class PluginCheck final {
public:
    explicit PluginCheck(const PluginFile& file);

    // Whether this is a file name of the SDK's own library.
    static bool IsSdkLibrary(std::string_view name);

    // Functions of the SDK that the plugin uses, in ascending order.
    const std::vector<std::string>& SdkFunctions() const { return sdkFunctions; }
    // The subset of SdkFunctions() that only answers 0.
    const std::vector<std::string>& NotSimulated() const { return notSimulated; }
    // Names and libraries that cannot be found anywhere.
    const std::vector<std::string>& Missing() const { return missing; }

    // One line each, without the plugin's name: "needs 2 names that neither the simulator nor the
    // system has: a, b".
    std::string DescribeMissing() const;
    std::string DescribeNotSimulated() const;
    // "uses 12 functions of the SDK: 10 real, 1 keeps state, 1 answers 0 (XPLMGetTexture)".
    std::string Summary() const;

private:
    void sortName(const std::string& name, const std::vector<void*>& libraries);
    std::vector<void*> openLibraries(const PluginFile& file);

    std::vector<std::string> sdkFunctions;
    std::vector<std::string> notSimulated;
    std::vector<std::string> missing;
};

} // namespace headless
