#include "headless/xplm/data/SharedValue.h"

#include <algorithm>

namespace headless {

void SharedValue::Notify(const DataNotification& notification) {
    notifications.push_back(notification);
}

bool SharedValue::Forget(const DataNotification& notification) {
    const auto found = std::find(notifications.begin(), notifications.end(), notification);
    if (found == notifications.end()) {
        return false;
    }
    notifications.erase(found);
    return true;
}

std::size_t SharedValue::DropOf(XPLMPluginID plugin) {
    return std::erase_if(notifications, [&](const auto& one) { return one.owner == plugin; });
}

void SharedValue::SetInt(int number) {
    StoredValue::SetInt(number);
    notifyAll();
}

void SharedValue::SetFloat(float number) {
    StoredValue::SetFloat(number);
    notifyAll();
}

void SharedValue::SetDouble(double number) {
    StoredValue::SetDouble(number);
    notifyAll();
}

void SharedValue::SetInts(int* values, int offset, int count) {
    grow(offset, count);
    StoredValue::SetInts(values, offset, count);
    notifyAll();
}

void SharedValue::SetFloats(float* values, int offset, int count) {
    grow(offset, count);
    StoredValue::SetFloats(values, offset, count);
    notifyAll();
}

void SharedValue::SetBytes(void* values, int offset, int count) {
    grow(offset, count);
    StoredValue::SetBytes(values, offset, count);
    notifyAll();
}

void SharedValue::grow(int offset, int count) {
    // A wrong offset must not exhaust the memory.
    constexpr int kMostElements = 1 << 24;
    if (offset >= 0 && count > 0 && offset <= kMostElements && count <= kMostElements) {
        Grow(offset + count);
    }
}

void SharedValue::notifyAll() {
    // Callbacks may come and go while they are called; skips those that are gone.
    for (const DataNotification& notification : std::vector<DataNotification>(notifications)) {
        const bool gone = std::find(notifications.begin(), notifications.end(), notification) ==
                          notifications.end();
        if (notification.callback != nullptr && !gone && context.IsActive(notification.owner)) {
            const PluginContext::Call call(context, notification.owner, "shared data notification");
            call.Into(notification.callback, notification.refcon);
        }
    }
}

} // namespace headless
