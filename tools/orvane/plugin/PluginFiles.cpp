#include "tools/orvane/plugin/PluginFiles.h"

#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"

namespace orvane::tool::plugin {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFolderName = "XPlaneOrvane";
// The plugin's text in the simulator's menu, which ends with its version.
constexpr std::string_view kMenuText = "XPlane10Orvane v";

std::string contentOf(const fs::path& file) {
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

// Of an installation, of the package and of a build.
std::vector<fs::path> placesBesideTool() {
    std::error_code ignored;
    const fs::path above = fs::read_symlink("/proc/self/exe", ignored).parent_path().parent_path();
    return {above / kFolderName, above / "lib" / "orvane" / kFolderName,
            above / "share" / "orvane" / kFolderName};
}

} // namespace

std::optional<std::string> pluginVersionOf(const fs::path& file) {
    const std::string content = contentOf(file);
    const std::size_t text = content.find(kMenuText);
    if (text == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t begin = text + kMenuText.size();
    return content.substr(begin, content.find_first_not_of("0123456789.", begin) - begin);
}

fs::path findPluginToCopy(const std::string& given) {
    const std::vector<fs::path> places =
        given.empty() ? placesBesideTool()
                      : std::vector<fs::path>{given, fs::path(given) / kFolderName};
    for (const fs::path& folder : places) {
        if (pluginVersionOf(folder / kPluginFile)) {
            return folder;
        }
    }
    throw Failure(ExitCode::WrongUsage,
                  given.empty()
                      ? "the plugin is not beside this tool: give its folder with --from"
                      : fmt::format("{}: neither it nor its folder XPlaneOrvane has the plugin, "
                                    "64/lin.xpl",
                                    given));
}

} // namespace orvane::tool::plugin
