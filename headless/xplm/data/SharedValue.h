#pragma once

#include <vector>

#include "headless/xplm/data/StoredValue.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// A callback for changes of shared data.
struct DataNotification {
    XPLMDataChanged_f callback = nullptr;
    void* refcon = nullptr;
    // The plugin that asked for it.
    XPLMPluginID owner = XPLM_PLUGIN_XPLANE;

    bool operator==(const DataNotification&) const = default;
};

// The value of data that plugins share: no plugin owns it, an array grows as it is written, and
// every write is reported to all plugins that asked.
class SharedValue final : public StoredValue {
public:
    SharedValue(const DatarefDefinition& definition, PluginContext& pluginContext)
        : StoredValue(definition), context(pluginContext) {}

    // The callback may be null; then nothing is called.
    void Notify(const DataNotification& notification);
    // False if the notification was not registered.
    bool Forget(const DataNotification& notification);
    std::size_t DropOf(XPLMPluginID plugin);

    void SetInt(int number) override;
    void SetFloat(float number) override;
    void SetDouble(double number) override;
    void SetInts(int* values, int offset, int count) override;
    void SetFloats(float* values, int offset, int count) override;
    void SetBytes(void* values, int offset, int count) override;

private:
    // Makes room for a write.
    void grow(int offset, int count);
    void notifyAll();

    PluginContext& context;
    std::vector<DataNotification> notifications;
};

} // namespace headless
