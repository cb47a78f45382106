#include "headless/xplm/data/AccessorValue.h"

namespace headless {

namespace {

template <class Result, class... Parameters, class... Arguments>
Result callIfSet(Result (*accessor)(void*, Parameters...), void* refcon, Arguments... arguments) {
    return accessor == nullptr ? Result() : accessor(refcon, arguments...);
}

} // namespace

int AccessorValue::GetInt() {
    return callIfSet(accessors.readInt, accessors.readRefcon);
}

void AccessorValue::SetInt(int value) {
    callIfSet(accessors.writeInt, accessors.writeRefcon, value);
}

float AccessorValue::GetFloat() {
    return callIfSet(accessors.readFloat, accessors.readRefcon);
}

void AccessorValue::SetFloat(float value) {
    callIfSet(accessors.writeFloat, accessors.writeRefcon, value);
}

double AccessorValue::GetDouble() {
    return callIfSet(accessors.readDouble, accessors.readRefcon);
}

void AccessorValue::SetDouble(double value) {
    callIfSet(accessors.writeDouble, accessors.writeRefcon, value);
}

int AccessorValue::GetInts(int* values, int offset, int max) {
    return callIfSet(accessors.readInts, accessors.readRefcon, values, offset, max);
}

void AccessorValue::SetInts(int* values, int offset, int count) {
    callIfSet(accessors.writeInts, accessors.writeRefcon, values, offset, count);
}

int AccessorValue::GetFloats(float* values, int offset, int max) {
    return callIfSet(accessors.readFloats, accessors.readRefcon, values, offset, max);
}

void AccessorValue::SetFloats(float* values, int offset, int count) {
    callIfSet(accessors.writeFloats, accessors.writeRefcon, values, offset, count);
}

int AccessorValue::GetBytes(void* values, int offset, int max) {
    return callIfSet(accessors.readBytes, accessors.readRefcon, values, offset, max);
}

void AccessorValue::SetBytes(void* values, int offset, int count) {
    callIfSet(accessors.writeBytes, accessors.writeRefcon, values, offset, count);
}

} // namespace headless
