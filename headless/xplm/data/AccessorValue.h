#pragma once

#include "XPLMDataAccess.h"
#include "headless/xplm/data/IDatarefValue.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The functions that a plugin gives with a dataref that it publishes. Slots of types that the
// dataref does not offer stay null.
struct DatarefAccessors {
    XPLMGetDatai_f readInt = nullptr;
    XPLMSetDatai_f writeInt = nullptr;
    XPLMGetDataf_f readFloat = nullptr;
    XPLMSetDataf_f writeFloat = nullptr;
    XPLMGetDatad_f readDouble = nullptr;
    XPLMSetDatad_f writeDouble = nullptr;
    XPLMGetDatavi_f readInts = nullptr;
    XPLMSetDatavi_f writeInts = nullptr;
    XPLMGetDatavf_f readFloats = nullptr;
    XPLMSetDatavf_f writeFloats = nullptr;
    XPLMGetDatab_f readBytes = nullptr;
    XPLMSetDatab_f writeBytes = nullptr;
    void* readRefcon = nullptr;
    void* writeRefcon = nullptr;
};

// The value of a dataref that a plugin publishes. Every access is passed to the plugin unchanged:
// the plugin checks offsets and counts. A null slot reads as zero, and so does everything while the
// plugin is disabled.
class AccessorValue final : public IDatarefValue {
public:
    // Belongs to the running plugin.
    AccessorValue(const DatarefAccessors& pluginAccessors, PluginContext& pluginContext)
        : accessors(pluginAccessors), context(pluginContext), owner(pluginContext.Plugin()) {}

    int GetInt() override;
    void SetInt(int value) override;
    float GetFloat() override;
    void SetFloat(float value) override;
    double GetDouble() override;
    void SetDouble(double value) override;
    int GetInts(int* values, int offset, int max) override;
    void SetInts(int* values, int offset, int count) override;
    int GetFloats(float* values, int offset, int max) override;
    void SetFloats(float* values, int offset, int count) override;
    int GetBytes(void* values, int offset, int max) override;
    void SetBytes(void* values, int offset, int count) override;

private:
    template <class Result, class... Parameters, class... Arguments>
    Result call(Result (*accessor)(void*, Parameters...), void* refcon, Arguments... arguments);

    DatarefAccessors accessors;
    PluginContext& context;
    XPLMPluginID owner;
};

} // namespace headless
