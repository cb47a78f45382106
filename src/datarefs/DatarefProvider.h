#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "datarefs/IDatarefProvider.h"
#include "datarefs/ZeroedArray.h"

class ILoggingService;

// True when `text` ends with `ending`.
bool hasEnding(const std::string& text, const std::string& ending);

// Publishes the plugin's own datarefs, keeps their values in memory, declares each of them in the
// configuration file, and makes them known to the DataRefEditor plugin.
//
// Each dataref lives in one of the value maps under its refcon, a number counted up from 1 in
// order of registration. Datarefs are only ever added, and stay registered with the simulator until
// it drops the plugin, unless the start fails. The file may be unreadable or unwritable; that is
// never an error. Main thread only.
class DatarefProvider final : public IDatarefProvider {
public:
    // The plain accessor functions that the simulator is given; they forward to this object.
    // Nothing here logs: callers check whether a registration succeeded.
    DatarefProvider(ILoggingService* loggingService, int (*readInt)(void*),
                    void (*writeInt)(void*, int), float (*readFloat)(void*),
                    void (*writeFloat)(void*, float), double (*readDouble)(void*),
                    void (*writeDouble)(void*, double), int (*readIntArray)(void*, int*, int, int),
                    void (*writeIntArray)(void*, int*, int, int),
                    int (*readFloatArray)(void*, float*, int, int),
                    void (*writeFloatArray)(void*, float*, int, int),
                    int (*readData)(void*, void*, int, int),
                    void (*writeData)(void*, void*, int, int));
    DatarefProvider(const DatarefProvider&) = delete;
    DatarefProvider& operator=(const DatarefProvider&) = delete;

    XPLMDataRef RegisterInt(std::string name) override;
    XPLMDataRef RegisterIntArray(std::size_t size, std::string name) override;
    XPLMDataRef RegisterFloat(std::string name) override;
    XPLMDataRef RegisterFloatArray(std::size_t size, std::string name) override;
    XPLMDataRef RegisterDouble(std::string name) override;
    XPLMDataRef RegisterByteArray(std::size_t size, std::string name) override;

    void ProcessFlightLoop() override;
    void ParseConfig() override;

    int GetInt(void* refcon) override;
    void SetInt(void* refcon, int value) override;
    void SetIntArray(void* refcon, int* values, int offset, int count) override;
    int GetIntArray(void* refcon, int* values, int offset, int max) override;
    float GetFloat(void* refcon) override;
    void SetFloat(void* refcon, float value) override;
    void SetFloatArray(void* refcon, float* values, int offset, int count) override;
    int GetFloatArray(void* refcon, float* values, int offset, int max) override;
    double GetDouble(void* refcon) override;
    void SetDouble(void* refcon, double value) override;
    int GetBytes(void* refcon, void* values, int offset, int max) override;
    void SetBytes(void* refcon, void* values, int offset, int count) override;

    void UnregisterAll() override;

    // Registers what one line of the file declares; a malformed line is ignored.
    void parseConfigLine(std::string line);
    // Runs of the delimiter separate tokens; the last token may be empty.
    std::vector<std::string> splitString(const std::string& text, char delimiter);
    // Appends a declaration unless the file is known to hold one. `size` counts for arrays only.
    void ensureDatarefInConfig(const std::string& name, const std::string& type, int size);
    // Adds the name to the DataRefEditor's list if that plugin is loaded.
    void notifyDataRefEditor(std::string name);

private:
    // What the simulator gets besides a dataref's name and refcon: its type and that type's pair of
    // accessors. The other accessors stay null.
    struct Accessors {
        XPLMDataTypeID type = xplmType_Unknown;
        XPLMGetDatai_f readInt = nullptr;
        XPLMSetDatai_f writeInt = nullptr;
        XPLMGetDataf_f readFloat = nullptr;
        XPLMSetDataf_f writeFloat = nullptr;
        XPLMGetDatad_f readDouble = nullptr;
        XPLMSetDatad_f writeDouble = nullptr;
        XPLMGetDatavi_f readIntArray = nullptr;
        XPLMSetDatavi_f writeIntArray = nullptr;
        XPLMGetDatavf_f readFloatArray = nullptr;
        XPLMSetDatavf_f writeFloatArray = nullptr;
        XPLMGetDatab_f readData = nullptr;
        XPLMSetDatab_f writeData = nullptr;
    };

    template <typename Value>
    using Values = std::map<void*, Value>;

    // `size` is the number of elements of an array, and 0 for a scalar.
    template <typename Value>
    XPLMDataRef registerDataref(const std::string& name, const Accessors& offered,
                                const char* typeWord, std::size_t size, Values<Value>& values);
    void announce(const std::string& name);

    void registerScalar(const std::string& name, const std::string& type);
    void registerArray(const std::string& name, const std::string& type,
                       const std::string& sizeText);

    bool editorNotified = false;
    std::string configFilePath;
    std::set<std::string> pendingEditorNames;
    std::map<std::string, XPLMDataRef> registeredDatarefs;
    std::set<std::string> configNames;
    std::uint64_t nextRefcon = 1;
    Values<std::int32_t> intValues;
    Values<ZeroedArray<std::int32_t>> intArrayValues;
    Values<float> floatValues;
    Values<ZeroedArray<float>> floatArrayValues;
    Values<double> doubleValues;
    Values<ZeroedArray<unsigned char>> byteArrayValues;
    Accessors accessors;
};
