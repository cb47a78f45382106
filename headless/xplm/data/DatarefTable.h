#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/data/AccessorValue.h"
#include "headless/xplm/data/Dataref.h"
#include "headless/xplm/data/SharedValue.h"

namespace headless {

// All datarefs by name: the simulator's own, those that plugins publish, and shared data.
//
// It has two sides. The host (tests, headless-sim) is the simulator: it defines datarefs and reads
// and writes them by name, including read-only ones. Plugins find, publish and unregister;
// DatarefAccess has what they do with a handle. Handles stay valid addresses for the table's life.
//
// Host access throws std::out_of_range for an unknown name and std::invalid_argument for a type
// that the dataref does not offer.
class DatarefTable final {
public:
    DatarefTable(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), recorder(callRecorder) {}
    DatarefTable(const DatarefTable&) = delete;
    DatarefTable& operator=(const DatarefTable&) = delete;

    // Host side. Throws std::invalid_argument if the name is already defined.
    Dataref& Define(const DatarefDefinition& definition);
    // Null for an unknown name.
    Dataref* Lookup(std::string_view name) const;
    // The names in ascending order.
    std::vector<std::string> Names() const;

    int GetInt(std::string_view name) const;
    void SetInt(std::string_view name, int value);
    float GetFloat(std::string_view name) const;
    void SetFloat(std::string_view name, float value);
    double GetDouble(std::string_view name) const;
    void SetDouble(std::string_view name, double value);
    // Arrays: all elements are read; a write starts at element 0 and may be shorter or longer.
    std::vector<int> GetIntArray(std::string_view name) const;
    void SetIntArray(std::string_view name, std::vector<int> values);
    std::vector<float> GetFloatArray(std::string_view name) const;
    void SetFloatArray(std::string_view name, std::vector<float> values);
    // All bytes. A write fills the rest of the dataref with zeros.
    std::string GetBytes(std::string_view name) const;
    void SetBytes(std::string_view name, std::string bytes);
    // The bytes before the first zero.
    std::string GetText(std::string_view name) const;

    // From now on plugins cannot register this name, or any name.
    void RefuseRegistration(const std::string& name) { refusedNames.insert(name); }
    void RefuseAllRegistrations(bool refuse) { refuseAll = refuse; }
    // Turns the plugin's datarefs into orphans, as the simulator does when a plugin is gone, and
    // removes its notifications of shared data.
    std::size_t DropOf(XPLMPluginID plugin);

    // Plugin side.
    XPLMDataRef Find(const char* name);
    XPLMDataRef Register(const char* name, XPLMDataTypeID types, bool writable,
                         const DatarefAccessors& accessors);
    void Unregister(XPLMDataRef handle);
    // False if the name exists as something else.
    bool Share(const char* name, XPLMDataTypeID type, const DataNotification& notification);
    bool Unshare(const char* name, XPLMDataTypeID type, const DataNotification& notification);
    // Includes orphans, so a dataref's index never changes.
    int Count() const { return static_cast<int>(datarefs.size()); }
    // Null for an index that does not exist.
    XPLMDataRef Nth(int index) const;
    // Null for a handle that was never given out; finds orphans. Records no refusal.
    const Dataref* Peek(XPLMDataRef handle) const;
    // The live dataref of a handle. Null for any other handle; records the refusal.
    Dataref* Resolve(XPLMDataRef handle, const char* function);
    // For records. Also works for a stale handle; "(none)" for one that was never given out.
    const char* NameOf(XPLMDataRef handle) const;

private:
    // Gives an orphan of the name its value, otherwise adds the dataref.
    Dataref& add(Dataref dataref);
    SharedValue* sharedOf(const char* name, XPLMDataTypeID type) const;
    IDatarefValue& valueOf(std::string_view name, XPLMDataTypeID type) const;

    PluginContext& context;
    CallRecorder& recorder;
    std::vector<std::unique_ptr<Dataref>> datarefs;
    std::unordered_set<const void*> handles;
    // Includes orphans.
    std::map<std::string, Dataref*, std::less<>> byName;
    std::map<const Dataref*, SharedValue*> shared;
    std::set<std::string> refusedNames;
    bool refuseAll = false;
};

} // namespace headless
