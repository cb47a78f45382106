#pragma once

#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// What plugins do with dataref handles: the simulator's rules for reading and writing.
//
// A null, foreign or stale handle, or a type that the dataref does not offer (types are never
// converted), reads as zero. Writes through those, and to a read-only dataref, are dropped. Each is
// recorded as a refusal.
class DatarefAccess final {
public:
    DatarefAccess(DatarefTable& datarefTable, CallRecorder& callRecorder)
        : table(datarefTable), recorder(callRecorder) {}
    DatarefAccess(const DatarefAccess&) = delete;
    DatarefAccess& operator=(const DatarefAccess&) = delete;

    bool CanWrite(XPLMDataRef handle);
    XPLMDataTypeID Types(XPLMDataRef handle);

    int GetInt(XPLMDataRef handle);
    void SetInt(XPLMDataRef handle, int value);
    float GetFloat(XPLMDataRef handle);
    void SetFloat(XPLMDataRef handle, float value);
    double GetDouble(XPLMDataRef handle);
    void SetDouble(XPLMDataRef handle, double value);
    int GetInts(XPLMDataRef handle, int* values, int offset, int max);
    void SetInts(XPLMDataRef handle, int* values, int offset, int count);
    int GetFloats(XPLMDataRef handle, float* values, int offset, int max);
    void SetFloats(XPLMDataRef handle, float* values, int offset, int count);
    int GetBytes(XPLMDataRef handle, void* values, int offset, int max);
    void SetBytes(XPLMDataRef handle, void* values, int offset, int count);

private:
    // Looks nothing up unless recording is enabled.
    template <class... Arguments>
    void record(const char* function, XPLMDataRef handle, const Arguments&... arguments) {
        if (recorder.IsEnabled()) {
            recorder.Record(function, handle, table.NameOf(handle), arguments...);
        }
    }
    // Null if the access is refused.
    IDatarefValue* readable(XPLMDataRef handle, XPLMDataTypeID type, const char* function);
    IDatarefValue* writable(XPLMDataRef handle, XPLMDataTypeID type, const char* function);
    Dataref* offering(XPLMDataRef handle, XPLMDataTypeID type, const char* function);

    DatarefTable& table;
    CallRecorder& recorder;
};

} // namespace headless
