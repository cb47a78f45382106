// Scripts that run in a plugin open the SDK's libraries by file, in the simulator's folder, where
// they are not. Those names lead to this library: its dlopen comes before the system's.

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
    // The last step must be a jump: the system looks at who called to find that caller's folders.
    return systemOpen(path != nullptr && isSdkLibrary(path) ? ownPath() : path, mode);
}
