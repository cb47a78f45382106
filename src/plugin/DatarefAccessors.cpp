#include "plugin/DatarefAccessors.h"

#include "datarefs/IDatarefProvider.h"
#include "plugin/ExceptionBarrier.h"
#include "plugin/PluginGlobals.h"
#include "plugin/XPlanePlugin.h"

namespace {

template <typename Value, typename... Parameters, typename... Arguments>
Value get(Value (IDatarefProvider::*operation)(Parameters...), Arguments... arguments) {
    return withExceptionBarrier(Value{}, [&] {
        IDatarefProvider* const provider =
            globalPlugin != nullptr ? globalPlugin->GetDatarefProvider() : nullptr;
        return provider != nullptr ? (provider->*operation)(arguments...) : Value{};
    });
}

template <typename... Parameters, typename... Arguments>
void set(void (IDatarefProvider::*operation)(Parameters...), Arguments... arguments) {
    withExceptionBarrier([&] {
        IDatarefProvider* const provider =
            globalPlugin != nullptr ? globalPlugin->GetDatarefProvider() : nullptr;
        if (provider != nullptr) {
            (provider->*operation)(arguments...);
        }
    });
}

} // namespace

int GetInt(void* refcon) {
    return get(&IDatarefProvider::GetInt, refcon);
}

void SetInt(void* refcon, int value) {
    set(&IDatarefProvider::SetInt, refcon, value);
}

float GetFloat(void* refcon) {
    return get(&IDatarefProvider::GetFloat, refcon);
}

void SetFloat(void* refcon, float value) {
    set(&IDatarefProvider::SetFloat, refcon, value);
}

double GetDouble(void* refcon) {
    return get(&IDatarefProvider::GetDouble, refcon);
}

void SetDouble(void* refcon, double value) {
    set(&IDatarefProvider::SetDouble, refcon, value);
}

int GetIntArray(void* refcon, int* values, int offset, int max) {
    return get(&IDatarefProvider::GetIntArray, refcon, values, offset, max);
}

void SetIntArray(void* refcon, int* values, int offset, int count) {
    set(&IDatarefProvider::SetIntArray, refcon, values, offset, count);
}

int GetFloatArray(void* refcon, float* values, int offset, int max) {
    return get(&IDatarefProvider::GetFloatArray, refcon, values, offset, max);
}

void SetFloatArray(void* refcon, float* values, int offset, int count) {
    set(&IDatarefProvider::SetFloatArray, refcon, values, offset, count);
}

int GetByteArray(void* refcon, void* values, int offset, int max) {
    return get(&IDatarefProvider::GetBytes, refcon, values, offset, max);
}

void SetByteArray(void* refcon, void* values, int offset, int count) {
    set(&IDatarefProvider::SetBytes, refcon, values, offset, count);
}
