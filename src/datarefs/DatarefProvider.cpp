#include "datarefs/DatarefProvider.h"

#include <algorithm>
#include <type_traits>

#include "XPLMPlugin.h"

namespace {

constexpr const char* kConfigFilePath = "./Resources/plugins/xplaneorvane_datarefs.cfg";
constexpr const char* kDataRefEditorSignature = "xplanesdk.examples.DataRefEditor";
// The DataRefEditor's message that adds the dataref named by the parameter to its list.
constexpr int kAddDataRefMessage = 0x01000000;
constexpr int kWritable = 1;

template <typename Value>
Value zeroValue(std::size_t size) {
    if constexpr (std::is_arithmetic_v<Value>) {
        return Value{};
    } else {
        return Value(size);
    }
}

template <typename Value>
Value readScalar(const std::map<void*, Value>& values, void* refcon) {
    const auto found = values.find(refcon);
    return found != values.end() ? found->second : Value{};
}

template <typename Value>
void writeScalar(std::map<void*, Value>& values, void* refcon, Value value) {
    const auto found = values.find(refcon);
    if (found != values.end()) {
        found->second = value;
    }
}

template <typename Value>
int readArray(const std::map<void*, ZeroedArray<Value>>& arrays, void* refcon, Value* values,
              int offset, int max) {
    const auto found = arrays.find(refcon);
    if (found == arrays.end()) {
        return 0;
    }
    const int size = static_cast<int>(found->second.Size());
    if (values == nullptr) {
        return size;
    }
    if (offset < 0 || offset >= size || max < 1) {
        return 0;
    }
    const int count = std::min(max, size - offset);
    std::copy_n(found->second.Data() + offset, count, values);
    return count;
}

// Clients know that the last element cannot be written, and leave one element to spare.
template <typename Value>
void writeArray(std::map<void*, ZeroedArray<Value>>& arrays, void* refcon, const Value* values,
                int offset, int count) {
    const auto found = arrays.find(refcon);
    if (found == arrays.end()) {
        return;
    }
    const int size = static_cast<int>(found->second.Size());
    if (offset < 0 || offset >= size || count < 1 || count >= size - offset) {
        return;
    }
    std::copy_n(values, count, found->second.Data() + offset);
}

} // namespace

DatarefProvider::DatarefProvider(
    ILoggingService* /*loggingService*/, int (*readInt)(void*), void (*writeInt)(void*, int),
    float (*readFloat)(void*), void (*writeFloat)(void*, float), double (*readDouble)(void*),
    void (*writeDouble)(void*, double), int (*readIntArray)(void*, int*, int, int),
    void (*writeIntArray)(void*, int*, int, int), int (*readFloatArray)(void*, float*, int, int),
    void (*writeFloatArray)(void*, float*, int, int), int (*readData)(void*, void*, int, int),
    void (*writeData)(void*, void*, int, int))
    : configFilePath(kConfigFilePath),
      accessors{.readInt = readInt,
                .writeInt = writeInt,
                .readFloat = readFloat,
                .writeFloat = writeFloat,
                .readDouble = readDouble,
                .writeDouble = writeDouble,
                .readIntArray = readIntArray,
                .writeIntArray = writeIntArray,
                .readFloatArray = readFloatArray,
                .writeFloatArray = writeFloatArray,
                .readData = readData,
                .writeData = writeData} {}

XPLMDataRef DatarefProvider::RegisterInt(std::string name) {
    const Accessors offered{
        .type = xplmType_Int, .readInt = accessors.readInt, .writeInt = accessors.writeInt};
    return registerDataref(name, offered, "int", 0, intValues);
}

XPLMDataRef DatarefProvider::RegisterIntArray(std::size_t size, std::string name) {
    const Accessors offered{.type = xplmType_IntArray,
                            .readIntArray = accessors.readIntArray,
                            .writeIntArray = accessors.writeIntArray};
    return registerDataref(name, offered, "int_array", size, intArrayValues);
}

XPLMDataRef DatarefProvider::RegisterFloat(std::string name) {
    const Accessors offered{.type = xplmType_Float,
                            .readFloat = accessors.readFloat,
                            .writeFloat = accessors.writeFloat};
    return registerDataref(name, offered, "float", 0, floatValues);
}

XPLMDataRef DatarefProvider::RegisterFloatArray(std::size_t size, std::string name) {
    const Accessors offered{.type = xplmType_FloatArray,
                            .readFloatArray = accessors.readFloatArray,
                            .writeFloatArray = accessors.writeFloatArray};
    return registerDataref(name, offered, "float_array", size, floatArrayValues);
}

XPLMDataRef DatarefProvider::RegisterDouble(std::string name) {
    const Accessors offered{.type = xplmType_Double,
                            .readDouble = accessors.readDouble,
                            .writeDouble = accessors.writeDouble};
    return registerDataref(name, offered, "double", 0, doubleValues);
}

XPLMDataRef DatarefProvider::RegisterByteArray(std::size_t size, std::string name) {
    const Accessors offered{
        .type = xplmType_Data, .readData = accessors.readData, .writeData = accessors.writeData};
    return registerDataref(name, offered, "byte_array", size, byteArrayValues);
}

template <typename Value>
XPLMDataRef DatarefProvider::registerDataref(const std::string& name, const Accessors& offered,
                                             const char* typeWord, std::size_t size,
                                             Values<Value>& values) {
    if (registeredDatarefs.contains(name)) {
        return nullptr;
    }
    // A number, never an address: NOLINTNEXTLINE(performance-no-int-to-ptr)
    void* const refcon = reinterpret_cast<void*>(nextRefcon);
    // Comes first: a dataref that cannot be stored must leave no trace.
    Values<Value> newValue;
    newValue.emplace(refcon, zeroValue<Value>(size));
    std::map<std::string, XPLMDataRef> newDataref{{name, nullptr}};

    const XPLMDataRef handle = XPLMRegisterDataAccessor(
        name.c_str(), offered.type, kWritable, offered.readInt, offered.writeInt, offered.readFloat,
        offered.writeFloat, offered.readDouble, offered.writeDouble, offered.readIntArray,
        offered.writeIntArray, offered.readFloatArray, offered.writeFloatArray, offered.readData,
        offered.writeData, refcon, refcon);
    if (handle == nullptr) {
        return nullptr;
    }
    values.merge(newValue);
    ++nextRefcon;
    newDataref[name] = handle;
    registeredDatarefs.merge(newDataref);
    ensureDatarefInConfig(name, typeWord, static_cast<int>(size));
    announce(name);
    return handle;
}

void DatarefProvider::UnregisterAll() {
    for (const auto& [name, handle] : registeredDatarefs) {
        XPLMUnregisterDataAccessor(handle);
    }
    registeredDatarefs.clear();
    pendingEditorNames.clear();
    intValues.clear();
    intArrayValues.clear();
    floatValues.clear();
    floatArrayValues.clear();
    doubleValues.clear();
    byteArrayValues.clear();
}

void DatarefProvider::announce(const std::string& name) {
    if (editorNotified) {
        notifyDataRefEditor(name);
    } else {
        pendingEditorNames.insert(name);
    }
}

void DatarefProvider::ProcessFlightLoop() {
    if (editorNotified) {
        return;
    }
    for (const std::string& name : pendingEditorNames) {
        notifyDataRefEditor(name);
    }
    editorNotified = true;
}

void DatarefProvider::notifyDataRefEditor(std::string name) {
    const XPLMPluginID editor = XPLMFindPluginBySignature(kDataRefEditorSignature);
    if (editor != XPLM_NO_PLUGIN_ID) {
        XPLMSendMessageToPlugin(editor, kAddDataRefMessage, name.data());
    }
}

int DatarefProvider::GetInt(void* refcon) {
    return readScalar(intValues, refcon);
}

void DatarefProvider::SetInt(void* refcon, int value) {
    writeScalar(intValues, refcon, value);
}

void DatarefProvider::SetIntArray(void* refcon, int* values, int offset, int count) {
    writeArray(intArrayValues, refcon, values, offset, count);
}

int DatarefProvider::GetIntArray(void* refcon, int* values, int offset, int max) {
    return readArray(intArrayValues, refcon, values, offset, max);
}

float DatarefProvider::GetFloat(void* refcon) {
    return readScalar(floatValues, refcon);
}

void DatarefProvider::SetFloat(void* refcon, float value) {
    writeScalar(floatValues, refcon, value);
}

void DatarefProvider::SetFloatArray(void* refcon, float* values, int offset, int count) {
    writeArray(floatArrayValues, refcon, values, offset, count);
}

int DatarefProvider::GetFloatArray(void* refcon, float* values, int offset, int max) {
    return readArray(floatArrayValues, refcon, values, offset, max);
}

double DatarefProvider::GetDouble(void* refcon) {
    return readScalar(doubleValues, refcon);
}

void DatarefProvider::SetDouble(void* /*refcon*/, double /*value*/) {}

int DatarefProvider::GetBytes(void* /*refcon*/, void* /*values*/, int /*offset*/, int /*max*/) {
    return 0;
}

void DatarefProvider::SetBytes(void* /*refcon*/, void* /*values*/, int /*offset*/, int /*count*/) {}
