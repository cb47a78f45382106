#pragma once

namespace headless {

// A dataref's value: kept by the simulator or reached through a plugin's accessors.
//
// Array reads with a null buffer return the element count; others return how many they copied.
class IDatarefValue {
public:
    virtual ~IDatarefValue() = default;

    virtual int GetInt() = 0;
    virtual void SetInt(int value) = 0;
    virtual float GetFloat() = 0;
    virtual void SetFloat(float value) = 0;
    virtual double GetDouble() = 0;
    virtual void SetDouble(double value) = 0;
    virtual int GetInts(int* values, int offset, int max) = 0;
    virtual void SetInts(int* values, int offset, int count) = 0;
    virtual int GetFloats(float* values, int offset, int max) = 0;
    virtual void SetFloats(float* values, int offset, int count) = 0;
    virtual int GetBytes(void* values, int offset, int max) = 0;
    virtual void SetBytes(void* values, int offset, int count) = 0;
};

} // namespace headless
