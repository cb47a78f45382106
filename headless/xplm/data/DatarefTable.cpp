#include "headless/xplm/data/DatarefTable.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "headless/xplm/data/StoredValue.h"

namespace headless {

namespace {

constexpr const char* kRegister = "XPLMRegisterDataAccessor";
constexpr const char* kUnregister = "XPLMUnregisterDataAccessor";

} // namespace

Dataref& DatarefTable::Define(const DatarefDefinition& definition) {
    if (Lookup(definition.name) != nullptr) {
        throw std::invalid_argument(definition.name + ": the dataref exists already");
    }
    return add(Dataref(definition, Dataref::Owner::Simulator, XPLM_PLUGIN_XPLANE,
                       std::make_unique<StoredValue>(definition)));
}

Dataref* DatarefTable::Lookup(std::string_view name) const {
    const auto found = byName.find(name);
    return found == byName.end() || !found->second->IsLive() ? nullptr : found->second;
}

std::vector<std::string> DatarefTable::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, dataref] : byName) {
        if (dataref->IsLive()) {
            names.push_back(name);
        }
    }
    return names;
}

int DatarefTable::GetInt(std::string_view name) const {
    return valueOf(name, xplmType_Int).GetInt();
}

void DatarefTable::SetInt(std::string_view name, int value) {
    valueOf(name, xplmType_Int).SetInt(value);
}

float DatarefTable::GetFloat(std::string_view name) const {
    return valueOf(name, xplmType_Float).GetFloat();
}

void DatarefTable::SetFloat(std::string_view name, float value) {
    valueOf(name, xplmType_Float).SetFloat(value);
}

double DatarefTable::GetDouble(std::string_view name) const {
    return valueOf(name, xplmType_Double).GetDouble();
}

void DatarefTable::SetDouble(std::string_view name, double value) {
    valueOf(name, xplmType_Double).SetDouble(value);
}

std::vector<int> DatarefTable::GetIntArray(std::string_view name) const {
    IDatarefValue& value = valueOf(name, xplmType_IntArray);
    const int size = value.GetInts(nullptr, 0, 0);
    std::vector<int> values(static_cast<std::size_t>(std::max(0, size)));
    value.GetInts(values.data(), 0, size);
    return values;
}

void DatarefTable::SetIntArray(std::string_view name, std::vector<int> values) {
    valueOf(name, xplmType_IntArray).SetInts(values.data(), 0, static_cast<int>(values.size()));
}

std::vector<float> DatarefTable::GetFloatArray(std::string_view name) const {
    IDatarefValue& value = valueOf(name, xplmType_FloatArray);
    const int size = value.GetFloats(nullptr, 0, 0);
    std::vector<float> values(static_cast<std::size_t>(std::max(0, size)));
    value.GetFloats(values.data(), 0, size);
    return values;
}

void DatarefTable::SetFloatArray(std::string_view name, std::vector<float> values) {
    valueOf(name, xplmType_FloatArray).SetFloats(values.data(), 0, static_cast<int>(values.size()));
}

std::string DatarefTable::GetBytes(std::string_view name) const {
    IDatarefValue& value = valueOf(name, xplmType_Data);
    const int size = value.GetBytes(nullptr, 0, 0);
    std::string bytes(static_cast<std::size_t>(std::max(0, size)), '\0');
    value.GetBytes(bytes.data(), 0, size);
    return bytes;
}

void DatarefTable::SetBytes(std::string_view name, std::string bytes) {
    IDatarefValue& value = valueOf(name, xplmType_Data);
    const auto size = static_cast<std::size_t>(std::max(0, value.GetBytes(nullptr, 0, 0)));
    bytes.resize(size, '\0');
    value.SetBytes(bytes.data(), 0, static_cast<int>(size));
}

std::string DatarefTable::GetText(std::string_view name) const {
    const std::string bytes = GetBytes(name);
    return bytes.substr(0, bytes.find('\0'));
}

std::size_t DatarefTable::DropOf(XPLMPluginID plugin) {
    std::size_t dropped = 0;
    for (const auto& dataref : datarefs) {
        if (dataref->IsLive() && dataref->IsPluginOwned() && dataref->Plugin() == plugin) {
            dataref->Retire();
            ++dropped;
        }
    }
    for (const auto& [dataref, value] : shared) {
        dropped += value->DropOf(plugin);
    }
    return dropped;
}

XPLMDataRef DatarefTable::Find(const char* name) {
    if (name == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMFindDataRef", "name");
        return nullptr;
    }
    Dataref* found = Lookup(name);
    recorder.Record("XPLMFindDataRef", found, name);
    if (found == nullptr) {
        recorder.Refuse(Refusal::UnknownName, "XPLMFindDataRef", name);
    }
    return found;
}

XPLMDataRef DatarefTable::Register(const char* name, XPLMDataTypeID types, bool writable,
                                   const DatarefAccessors& accessors) {
    if (name == nullptr) {
        recorder.Refuse(Refusal::NullText, kRegister, "name");
        return nullptr;
    }
    recorder.Record(kRegister, nullptr, name, types, writable ? "writable" : "read-only");
    if (refuseAll || refusedNames.count(name) != 0) {
        recorder.Refuse(Refusal::Ordered, kRegister, name);
        return nullptr;
    }
    if (Lookup(name) != nullptr) {
        recorder.Refuse(Refusal::NameTaken, kRegister, name);
        return nullptr;
    }
    return &add(Dataref({.name = name, .types = types, .writable = writable},
                        Dataref::Owner::Plugin, context.Plugin(),
                        std::make_unique<AccessorValue>(accessors, context)));
}

void DatarefTable::Unregister(XPLMDataRef handle) {
    Dataref* dataref = Resolve(handle, kUnregister);
    if (dataref == nullptr) {
        return;
    }
    const char* name = dataref->Definition().name.c_str();
    recorder.Record(kUnregister, handle, name);
    if (!dataref->IsPluginOwned()) {
        recorder.Refuse(Refusal::NotRegistered, kUnregister, name);
        return;
    }
    dataref->Retire();
}

bool DatarefTable::Share(const char* name, XPLMDataTypeID type,
                         const DataNotification& notification) {
    if (name == nullptr) {
        recorder.Refuse(Refusal::NullText, "name");
        return false;
    }
    if (Lookup(name) == nullptr) {
        const DatarefDefinition definition{.name = name, .types = type};
        auto value = std::make_unique<SharedValue>(definition, context);
        SharedValue* const made = value.get();
        shared[&add(Dataref(definition, Dataref::Owner::Simulator, XPLM_PLUGIN_XPLANE,
                            std::move(value)))] = made;
    }
    SharedValue* const value = sharedOf(name, type);
    if (value == nullptr) {
        recorder.Refuse(Refusal::NameTaken, name);
        return false;
    }
    value->Notify(notification);
    return true;
}

bool DatarefTable::Unshare(const char* name, XPLMDataTypeID type,
                           const DataNotification& notification) {
    SharedValue* const value = name == nullptr ? nullptr : sharedOf(name, type);
    const bool known = value != nullptr && value->Forget(notification);
    if (!known) {
        recorder.Refuse(Refusal::NotRegistered, name == nullptr ? "name" : name);
    }
    return known;
}

XPLMDataRef DatarefTable::Nth(int index) const {
    return index < 0 || index >= Count() ? nullptr
                                         : datarefs[static_cast<std::size_t>(index)].get();
}

const Dataref* DatarefTable::Peek(XPLMDataRef handle) const {
    return handles.count(handle) == 0 ? nullptr : static_cast<const Dataref*>(handle);
}

Dataref* DatarefTable::Resolve(XPLMDataRef handle, const char* function) {
    if (handle == nullptr) {
        recorder.Refuse(Refusal::NullHandle, function, "dataref");
        return nullptr;
    }
    if (handles.count(handle) == 0) {
        recorder.Refuse(Refusal::UnknownHandle, function, "dataref");
        return nullptr;
    }
    auto* dataref = static_cast<Dataref*>(handle);
    if (!dataref->IsLive()) {
        recorder.Refuse(Refusal::StaleHandle, function, dataref->Definition().name.c_str());
        return nullptr;
    }
    return dataref;
}

const char* DatarefTable::NameOf(XPLMDataRef handle) const {
    const bool known = handles.count(handle) != 0;
    return known ? static_cast<const Dataref*>(handle)->Definition().name.c_str() : "(none)";
}

Dataref& DatarefTable::add(Dataref dataref) {
    Dataref*& known = byName[dataref.Definition().name];
    if (known != nullptr) {
        *known = std::move(dataref);
        return *known;
    }
    datarefs.push_back(std::make_unique<Dataref>(std::move(dataref)));
    known = datarefs.back().get();
    handles.insert(known);
    return *known;
}

SharedValue* DatarefTable::sharedOf(const char* name, XPLMDataTypeID type) const {
    const Dataref* const dataref = Lookup(name);
    const auto found = shared.find(dataref);
    const bool fits = found != shared.end() && dataref->Definition().types == type;
    return fits ? found->second : nullptr;
}

IDatarefValue& DatarefTable::valueOf(std::string_view name, XPLMDataTypeID type) const {
    Dataref* dataref = Lookup(name);
    if (dataref == nullptr) {
        throw std::out_of_range(std::string(name) + ": no such dataref");
    }
    if (!dataref->Offers(type)) {
        throw std::invalid_argument(std::string(name) + ": the dataref is of another type");
    }
    return dataref->Value();
}

} // namespace headless
