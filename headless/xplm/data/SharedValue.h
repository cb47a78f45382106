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
class SharedValue final : public IDatarefValue {
public:
    SharedValue(const DatarefDefinition& definition, PluginContext& pluginContext)
        : context(pluginContext), value(definition) {}

    // The callback may be null; then nothing is called.
    void Notify(const DataNotification& notification);
    // False if the notification was not registered.
    bool Forget(const DataNotification& notification);
    std::size_t DropOf(XPLMPluginID plugin);

    int GetInt() override { return value.GetInt(); }
    void SetInt(int number) override;
    float GetFloat() override { return value.GetFloat(); }
    void SetFloat(float number) override;
    double GetDouble() override { return value.GetDouble(); }
    void SetDouble(double number) override;
    int GetInts(int* values, int offset, int max) override;
    void SetInts(int* values, int offset, int count) override;
    int GetFloats(float* values, int offset, int max) override;
    void SetFloats(float* values, int offset, int count) override;
    int GetBytes(void* values, int offset, int max) override;
    void SetBytes(void* values, int offset, int count) override;

private:
    // Makes room for a write.
    void grow(int offset, int count);
    void notifyAll();

    PluginContext& context;
    StoredValue value;
    std::vector<DataNotification> notifications;
};

} // namespace headless
