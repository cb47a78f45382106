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
    value.SetInt(number);
    notifyAll();
}

void SharedValue::SetFloat(float number) {
    value.SetFloat(number);
    notifyAll();
}

void SharedValue::SetDouble(double number) {
    value.SetDouble(number);
    notifyAll();
}

int SharedValue::GetInts(int* values, int offset, int max) {
    return value.GetInts(values, offset, max);
}

void SharedValue::SetInts(int* values, int offset, int count) {
    grow(offset, count);
    value.SetInts(values, offset, count);
    notifyAll();
}

int SharedValue::GetFloats(float* values, int offset, int max) {
    return value.GetFloats(values, offset, max);
}

void SharedValue::SetFloats(float* values, int offset, int count) {
    grow(offset, count);
    value.SetFloats(values, offset, count);
    notifyAll();
}

int SharedValue::GetBytes(void* values, int offset, int max) {
    return value.GetBytes(values, offset, max);
}

void SharedValue::SetBytes(void* values, int offset, int count) {
    grow(offset, count);
    value.SetBytes(values, offset, count);
    notifyAll();
}

void SharedValue::grow(int offset, int count) {
    // A wrong offset must not exhaust the memory.
    constexpr int kMostElements = 1 << 24;
    if (offset >= 0 && count > 0 && offset <= kMostElements && count <= kMostElements) {
        value.Grow(offset + count);
    }
}

void SharedValue::notifyAll() {
    // Callbacks may come and go while they are called.
    for (const DataNotification& notification : std::vector<DataNotification>(notifications)) {
        if (notification.callback != nullptr && context.IsActive(notification.owner)) {
            const PluginContext::Call call(context, notification.owner, "shared data notification");
            call.Into(notification.callback, notification.refcon);
        }
    }
}

} // namespace headless
