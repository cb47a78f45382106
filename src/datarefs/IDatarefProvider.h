#pragma once

#include <cstddef>
#include <string>

#include "XPLMDataAccess.h"

// The plugin's own datarefs: registration and values.
//
// A registration returns null when nothing was registered: the name is already registered,
// with any type, or the simulator refuses it. Initial values are zero. `refcon` is what the
// simulator hands back to the accessors; an unknown one reads as zero and is not written.
class IDatarefProvider {
public:
    virtual ~IDatarefProvider() = default;

    virtual XPLMDataRef RegisterInt(std::string name) = 0;
    virtual XPLMDataRef RegisterIntArray(std::size_t size, std::string name) = 0;
    virtual XPLMDataRef RegisterFloat(std::string name) = 0;
    virtual XPLMDataRef RegisterFloatArray(std::size_t size, std::string name) = 0;
    virtual XPLMDataRef RegisterDouble(std::string name) = 0;
    virtual XPLMDataRef RegisterByteArray(std::size_t size, std::string name) = 0;

    // Called on every flight loop; the first call announces what start-up has registered.
    virtual void ProcessFlightLoop() = 0;
    // Registers what the configuration file declares; a missing file declares nothing.
    virtual void ParseConfig() = 0;

    virtual int GetInt(void* refcon) = 0;
    virtual void SetInt(void* refcon, int value) = 0;
    // A write that would reach the last element is refused whole; reads have no such limit.
    virtual void SetIntArray(void* refcon, int* values, int offset, int count) = 0;
    // A null `values` asks for the size; otherwise returns the number of elements copied.
    virtual int GetIntArray(void* refcon, int* values, int offset, int max) = 0;
    virtual float GetFloat(void* refcon) = 0;
    virtual void SetFloat(void* refcon, float value) = 0;
    virtual void SetFloatArray(void* refcon, float* values, int offset, int count) = 0;
    virtual int GetFloatArray(void* refcon, float* values, int offset, int max) = 0;
    virtual double GetDouble(void* refcon) = 0;
    // Doubles and byte arrays are published, but writes are dropped and reads give zero or nothing.
    virtual void SetDouble(void* refcon, double value) = 0;
    virtual int GetBytes(void* refcon, void* values, int offset, int max) = 0;
    virtual void SetBytes(void* refcon, void* values, int offset, int count) = 0;

    // Takes back every registration; the configuration file is left alone.
    virtual void UnregisterAll() {}
};
