#include "tools/orvane/plugin/ChosenSimulators.h"

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool::plugin {

namespace {

namespace fs = std::filesystem;

std::string joined(const std::vector<fs::path>& folders) {
    std::string text;
    for (const fs::path& folder : folders) {
        text += (text.empty() ? "" : ", ") + folder.string();
    }
    return text;
}

} // namespace

std::vector<fs::path> chosenToLookAt(const ChosenSimulators& chosen) {
    if (!chosen.folder.empty()) {
        const std::string reason = whyNotSimulator(chosen.folder, chosen.Kind());
        if (!reason.empty()) {
            throw Failure(ExitCode::WrongUsage, reason);
        }
        return {fs::canonical(chosen.folder)};
    }
    if (chosen.headless) {
        throw Failure(ExitCode::WrongUsage, "--headless needs FOLDER");
    }
    const ListedSimulators listed = listedSimulators(homeFolder());
    for (const std::string& note : listed.notes) {
        tell(note);
    }
    return listed.folders;
}

std::vector<fs::path> chosenToChange(const ChosenSimulators& chosen) {
    std::vector<fs::path> folders = chosenToLookAt(chosen);
    if (folders.empty()) {
        throw Failure(ExitCode::WrongUsage,
                      "no simulator is listed in ~/.x-plane: give its folder");
    }
    if (folders.size() > 1 && !chosen.all) {
        throw Failure(ExitCode::WrongUsage,
                      fmt::format("there are several simulators ({}): give the folder of one, or "
                                  "--all",
                                  joined(folders)));
    }
    return folders;
}

} // namespace orvane::tool::plugin
