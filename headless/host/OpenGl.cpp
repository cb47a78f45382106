#include "headless/host/OpenGl.h"

#include <dlfcn.h>

#include <algorithm>
#include <cctype>
#include <vector>

#include "headless/host/NoOpLibrary.h"

namespace headless {

namespace {

// The real name, so that it also stands in for the library that plugins ask for.
constexpr const char* kLibrary = "libGL.so.1";

bool wantsOpenGl(const PluginFile& plugin) {
    const auto& names = plugin.Undefined();
    const auto& libraries = plugin.Needed();
    return std::any_of(names.begin(), names.end(), &isOpenGlName) ||
           std::any_of(libraries.begin(), libraries.end(), &isOpenGlLibrary) ||
           plugin.Mentions("glXGetProcAddress") || plugin.Mentions("glGetString");
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
    if (!wantsOpenGl(plugin)) {
        return;
    }
    std::vector<std::string> names;
    std::vector<std::string> libraries = plugin.Needed();
    libraries.emplace_back(kLibrary);
    std::vector<std::string> absent;
    for (const std::string& library : libraries) {
        if (isOpenGlLibrary(library) &&
            ::dlopen(library.c_str(), RTLD_LAZY | RTLD_GLOBAL) == nullptr) {
            absent.push_back(library);
        }
    }
    std::copy_if(plugin.Undefined().begin(), plugin.Undefined().end(), std::back_inserter(names),
                 [](const std::string& name) {
                     return isOpenGlName(name) && ::dlsym(RTLD_DEFAULT, name.c_str()) == nullptr;
                 });
    if (!names.empty()) {
        loadNoOpLibrary("headless-opengl.so", names);
    }
    for (const std::string& library : absent) {
        loadNoOpLibrary(library, {"headless_nothing"});
    }
}

} // namespace headless
