#include "headless/host/OpenGl.h"

#include <dlfcn.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "headless/host/NoOpLibrary.h"

namespace headless {

namespace {

// The real name, so that it also stands in for the library that plugins ask for.
constexpr const char* kLibrary = "libGL.so.1";

bool wantsOpenGl(const PluginFile& file) {
    const auto& names = file.Undefined();
    const auto& libraries = file.Needed();
    return std::any_of(names.begin(), names.end(), &isOpenGlName) ||
           std::any_of(libraries.begin(), libraries.end(), &isOpenGlLibrary) ||
           file.Mentions("glXGetProcAddress") || file.Mentions("glGetString");
}

// Opens the libraries of the system and returns those that it does not have.
std::set<std::string> openLibraries(const std::vector<PluginFile>& files) {
    std::set<std::string> libraries{kLibrary};
    for (const PluginFile& file : files) {
        std::copy_if(file.Needed().begin(), file.Needed().end(),
                     std::inserter(libraries, libraries.end()), &isOpenGlLibrary);
    }
    std::erase_if(libraries, [](const std::string& library) {
        return ::dlopen(library.c_str(), RTLD_LAZY | RTLD_GLOBAL) != nullptr;
    });
    return libraries;
}

std::set<std::string> absentNames(const std::vector<PluginFile>& files) {
    std::set<std::string> names;
    for (const PluginFile& file : files) {
        std::copy_if(file.Undefined().begin(), file.Undefined().end(),
                     std::inserter(names, names.end()), [](const std::string& name) {
                         return isOpenGlName(name) &&
                                ::dlsym(RTLD_DEFAULT, name.c_str()) == nullptr;
                     });
    }
    return names;
}

} // namespace

bool isOpenGlName(std::string_view name) {
    for (const std::string_view prefix : {"glX", "glu", "gl"}) {
        if (name.starts_with(prefix) && name.size() > prefix.size()) {
            return std::isupper(static_cast<unsigned char>(name[prefix.size()])) != 0;
        }
    }
    return false;
}

bool isOpenGlLibrary(std::string_view name) {
    return name.starts_with("libGL.so") || name.starts_with("libOpenGL.so") ||
           name.starts_with("libGLX.so") || name.starts_with("libGLU.so");
}

void provideOpenGl(const PluginFile& plugin) {
    const std::vector<PluginFile> files = withOwnLibraries(plugin);
    if (std::none_of(files.begin(), files.end(), &wantsOpenGl)) {
        return;
    }
    const std::set<std::string> libraries = openLibraries(files);
    const std::set<std::string> names = absentNames(files);
    if (!names.empty()) {
        loadNoOpLibrary("headless-opengl.so", {names.begin(), names.end()});
    }
    for (const std::string& library : libraries) {
        loadNoOpLibrary(library, {"headless_nothing"});
    }
}

} // namespace headless
