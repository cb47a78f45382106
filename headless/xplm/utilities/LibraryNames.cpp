// Scripts that run in a plugin open the SDK's libraries by file, in the simulator's folder, where
// they do not exist. This dlopen precedes the system's and opens this library for those names.

#include <dlfcn.h>

#include <string_view>

namespace {

using Open = void* (*)(const char*, int);

bool isSdkLibrary(std::string_view path) {
    const std::string_view name = path.substr(path.rfind('/') + 1);
    return name == "XPLM_64.so" || name == "XPWidgets_64.so";
}

const char* ownPath() {
    Dl_info info{};
    return ::dladdr(reinterpret_cast<const void*>(&isSdkLibrary), &info) != 0 ? info.dli_fname
                                                                              : nullptr;
}

} // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" __attribute__((visibility("default"))) void* dlopen(const char* path, int mode) {
    static const Open systemOpen = reinterpret_cast<Open>(::dlsym(RTLD_NEXT, "dlopen"));
    // This must stay a tail call: the system uses the return address to find the caller's folders.
    return systemOpen(path != nullptr && isSdkLibrary(path) ? ownPath() : path, mode);
}
