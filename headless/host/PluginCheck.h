#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "headless/host/PluginFile.h"

namespace headless {

// What a plugin needs and whether it is here. The libraries that it asks for are loaded to look
// into them; the plugin itself is not.
class PluginCheck final {
public:
    explicit PluginCheck(const PluginFile& file);

    // The file names that the SDK's own library has.
    static bool IsSdkLibrary(std::string_view name);

    // Names of the SDK that the plugin uses, in ascending order.
    const std::vector<std::string>& SdkFunctions() const { return sdkFunctions; }
    // Those of them that only answer 0.
    const std::vector<std::string>& NotSimulated() const { return notSimulated; }
    // OpenGL's, which need not be here.
    const std::vector<std::string>& OpenGl() const { return openGl; }
    // Names and libraries that nobody has.
    const std::vector<std::string>& Missing() const { return missing; }

    // One line each, without the plugin's name: "needs 2 names that nobody has: a, b".
    std::string DescribeMissing() const;
    std::string DescribeNotSimulated() const;
    // "uses 12 functions of the SDK: 10 real, 1 keeps state, 1 answers 0 (XPLMGetTexture)".
    std::string Summary() const;

private:
    void sortName(const std::string& name, const std::vector<void*>& libraries);
    std::vector<void*> openLibraries(const PluginFile& file);

    std::vector<std::string> sdkFunctions;
    std::vector<std::string> notSimulated;
    std::vector<std::string> openGl;
    std::vector<std::string> missing;
};

} // namespace headless
