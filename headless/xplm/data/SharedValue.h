#pragma once

#include <vector>

#include "headless/xplm/data/StoredValue.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// Who is told when shared data changes.
struct DataNotification {
    XPLMDataChanged_f callback = nullptr;
    void* refcon = nullptr;
    // The plugin that asked for it.
    XPLMPluginID owner = XPLM_PLUGIN_XPLANE;

    bool operator==(const DataNotification&) const = default;
};

// The value of data that plugins share: it belongs to none of them, an array grows as it is
// written, and every write is told to all who asked.
class SharedValue final : public IDatarefValue {
public:
    SharedValue(const DatarefDefinition& definition, PluginContext& pluginContext)
        : context(pluginContext), value(definition) {}

    // Without a callback nobody is told.
    void Notify(const DataNotification& notification);
    // False for a notification that was not asked for.
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
    void tell();

    PluginContext& context;
    StoredValue value;
    std::vector<DataNotification> notifications;
};

} // namespace headless
