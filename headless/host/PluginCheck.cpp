#include "headless/host/PluginCheck.h"

#include <dlfcn.h>

#include <algorithm>

#include "headless/host/OpenGl.h"
#include "headless/xplm/FunctionTable.h"

namespace headless {

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += text.empty() ? "" : ", ";
        text += name;
    }
    return text;
}

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Null if the library is not found.
void* openLibrary(const std::string& name, const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) {
        const std::string file = std::string(folder).append("/").append(name);
        if (void* library = ::dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL)) {
            return library;
        }
    }
    return ::dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL);
}

} // namespace

PluginCheck::PluginCheck(const PluginFile& file) {
    const std::vector<void*> libraries = openLibraries(file);
    for (const PluginFile& each : withOwnLibraries(file)) {
        const bool isPlugin = each.Path() == file.Path();
        for (const std::string& name : each.Undefined()) {
            // The plugin may define other names that its libraries need.
            if (isPlugin || findSdkFunction(name) != nullptr) {
                sortName(name, libraries);
            }
        }
    }
    for (void* library : libraries) {
        ::dlclose(library);
    }
    for (auto* names : {&sdkFunctions, &notSimulated, &missing}) {
        std::sort(names->begin(), names->end());
        names->erase(std::unique(names->begin(), names->end()), names->end());
    }
}

bool PluginCheck::IsSdkLibrary(std::string_view name) {
    return name == "XPLM_64.so" || name == "XPWidgets_64.so";
}

std::string PluginCheck::DescribeMissing() const {
    return "needs " + counted(missing.size(), "name", "names") +
           " that neither the simulator nor the system has: " + joined(missing);
}

std::string PluginCheck::DescribeNotSimulated() const {
    return "uses " + counted(notSimulated.size(), "function", "functions") +
           " that the simulator does not have and answers with 0: " + joined(notSimulated);
}

std::string PluginCheck::Summary() const {
    const auto kept = std::count_if(sdkFunctions.begin(), sdkFunctions.end(), [](const auto& name) {
        return findSdkFunction(name)->kind == FunctionKind::KeepsState;
    });
    const std::size_t keepState = static_cast<std::size_t>(kept);
    std::string text =
        "uses " + counted(sdkFunctions.size(), "function of the SDK: ", "functions of the SDK: ") +
        std::to_string(sdkFunctions.size() - keepState - notSimulated.size()) + " real, " +
        std::to_string(keepState) + " keep state, " + std::to_string(notSimulated.size()) +
        " answer 0";
    if (!notSimulated.empty()) {
        text += " (" + joined(notSimulated) + ")";
    }
    return text;
}

void PluginCheck::sortName(const std::string& name, const std::vector<void*>& libraries) {
    if (const SdkFunction* function = findSdkFunction(name)) {
        sdkFunctions.push_back(name);
        if (function->kind == FunctionKind::AnswersZero) {
            notSimulated.push_back(name);
        }
        return;
    }
    // It may be missing.
    if (isOpenGlName(name)) {
        return;
    }
    const bool found = ::dlsym(RTLD_DEFAULT, name.c_str()) != nullptr ||
                       std::any_of(libraries.begin(), libraries.end(), [&](void* library) {
                           return ::dlsym(library, name.c_str()) != nullptr;
                       });
    if (!found) {
        missing.push_back(name);
    }
}

std::vector<void*> PluginCheck::openLibraries(const PluginFile& file) {
    // The libraries may need it to be opened.
    provideOpenGl(file);
    std::vector<void*> libraries;
    for (const std::string& name : file.Needed()) {
        if (isOpenGlLibrary(name) || IsSdkLibrary(name)) {
            continue;
        }
        if (void* library = openLibrary(name, file.RunPath())) {
            libraries.push_back(library);
        } else {
            missing.push_back(name);
        }
    }
    return libraries;
}

} // namespace headless
