#include "headless/xplm/Notices.h"

namespace headless {

void Notices::Once(const std::string& text) {
    const std::lock_guard<std::mutex> lock(mutex);
    give(text);
}

void Notices::Warn(const std::string& text) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (give("warning: " + text)) {
        warnings.push_back(text);
    }
}

std::vector<std::string> Notices::Warnings() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return warnings;
}

bool Notices::give(const std::string& text) {
    const bool isNew = given.insert(text).second;
    if (isNew) {
        log.Write("headless-sim: " + text + "\n");
    }
    return isNew;
}

} // namespace headless
