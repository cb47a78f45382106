#include "headless/xplm/Notices.h"

namespace headless {

void Notices::Once(const std::string& text) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (given.insert(text).second) {
        log.Write("headless-sim: " + text + "\n");
    }
}

} // namespace headless
