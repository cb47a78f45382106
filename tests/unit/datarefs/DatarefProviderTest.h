#pragma once

#include <climits>
#include <cstdint>
#include <vector>

#include "DatarefProviderFixture.h"

// Looks at the values of a provider's arrays.
class DatarefProviderTest : public DatarefProviderFixture {
protected:
    std::vector<int> intArray(std::uintptr_t number) {
        std::vector<int> values(
            static_cast<std::size_t>(provider->GetIntArray(refcon(number), nullptr, 0, 0)), -7);
        provider->GetIntArray(refcon(number), values.data(), 0, INT_MAX);
        return values;
    }
    std::vector<float> floatArray(std::uintptr_t number) {
        std::vector<float> values(
            static_cast<std::size_t>(provider->GetFloatArray(refcon(number), nullptr, 0, 0)),
            -7.0F);
        provider->GetFloatArray(refcon(number), values.data(), 0, INT_MAX);
        return values;
    }
};
