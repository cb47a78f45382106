#pragma once

#include <vector>

#include "headless/xplm/data/DatarefDefinition.h"
#include "headless/xplm/data/IDatarefValue.h"

namespace headless {

// The value of one of the simulator's own datarefs, initially zero.
//
// A dataref of several scalar types keeps one number, converted for each type. Access past an
// array's end is cut short; a negative offset or count copies nothing.
class StoredValue : public IDatarefValue {
public:
    explicit StoredValue(const DatarefDefinition& definition);

    // From now on, arrays of its types have at least this many elements.
    void Grow(int elements);

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
    XPLMDataTypeID types;
    // Holds every int and every float exactly.
    double number = 0.0;
    std::vector<int> ints;
    std::vector<float> floats;
    std::vector<char> bytes;
};

} // namespace headless
