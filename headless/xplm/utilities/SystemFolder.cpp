#include "headless/xplm/utilities/SystemFolder.h"

#include <algorithm>
#include <filesystem>

namespace headless {

SystemFolder::SystemFolder() {
    std::error_code error;
    path = withSlash(std::filesystem::current_path(error).string());
}

std::vector<std::string> SystemFolder::NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; entry != end;
         entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace headless
