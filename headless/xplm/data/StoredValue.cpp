#include "headless/xplm/data/StoredValue.h"

#include <algorithm>
#include <limits>

namespace headless {

namespace {

template <class Element>
std::vector<Element> storageFor(const DatarefDefinition& definition, XPLMDataTypeID type) {
    const bool offered = (definition.types & type) != 0;
    return std::vector<Element>(offered ? static_cast<std::size_t>(std::max(0, definition.elements))
                                        : 0U);
}

// How many of `wanted` elements exist from `offset` on.
template <class Element>
int available(const std::vector<Element>& stored, int offset, int wanted) {
    const int size = static_cast<int>(stored.size());
    if (offset < 0 || offset >= size || wanted < 1) {
        return 0;
    }
    return std::min(wanted, size - offset);
}

template <class Element>
int readElements(const std::vector<Element>& stored, Element* values, int offset, int max) {
    if (values == nullptr) {
        return static_cast<int>(stored.size());
    }
    const int count = available(stored, offset, max);
    if (count > 0) {
        std::copy_n(stored.begin() + offset, count, values);
    }
    return count;
}

template <class Element>
void writeElements(std::vector<Element>& stored, const Element* values, int offset, int count) {
    const int copied = available(stored, offset, count);
    if (values != nullptr && copied > 0) {
        std::copy_n(values, copied, stored.begin() + offset);
    }
}

template <class Element>
void growTo(std::vector<Element>& stored, bool offered, int elements) {
    const auto size = static_cast<std::size_t>(std::max(0, elements));
    if (offered && size > stored.size()) {
        stored.resize(size);
    }
}

} // namespace

StoredValue::StoredValue(const DatarefDefinition& definition)
    : types(definition.types),
      ints(storageFor<int>(definition, xplmType_IntArray)),
      floats(storageFor<float>(definition, xplmType_FloatArray)),
      bytes(storageFor<char>(definition, xplmType_Data)) {}

void StoredValue::Grow(int elements) {
    growTo(ints, (types & xplmType_IntArray) != 0, elements);
    growTo(floats, (types & xplmType_FloatArray) != 0, elements);
    growTo(bytes, (types & xplmType_Data) != 0, elements);
}

int StoredValue::GetInt() {
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    // NaN compares false with both limits.
    return number >= kLowest && number <= kHighest ? static_cast<int>(number) : 0;
}

void StoredValue::SetInt(int value) {
    number = value;
}

float StoredValue::GetFloat() {
    return static_cast<float>(number);
}

void StoredValue::SetFloat(float value) {
    number = static_cast<double>(value);
}

double StoredValue::GetDouble() {
    return number;
}

void StoredValue::SetDouble(double value) {
    number = value;
}

int StoredValue::GetInts(int* values, int offset, int max) {
    return readElements(ints, values, offset, max);
}

void StoredValue::SetInts(int* values, int offset, int count) {
    writeElements(ints, values, offset, count);
}

int StoredValue::GetFloats(float* values, int offset, int max) {
    return readElements(floats, values, offset, max);
}

void StoredValue::SetFloats(float* values, int offset, int count) {
    writeElements(floats, values, offset, count);
}

int StoredValue::GetBytes(void* values, int offset, int max) {
    return readElements(bytes, static_cast<char*>(values), offset, max);
}

void StoredValue::SetBytes(void* values, int offset, int count) {
    writeElements(bytes, static_cast<const char*>(values), offset, count);
}

} // namespace headless
