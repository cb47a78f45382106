#include "headless/xplm/data/AccessorValue.h"

namespace headless {

template <class Result, class... Parameters, class... Arguments>
Result AccessorValue::call(Result (*accessor)(void*, Parameters...), void* refcon,
                           Arguments... arguments) {
    if (accessor == nullptr || !context.IsActive(owner)) {
        return Result();
    }
    const PluginContext::Call call(context, owner, "dataref accessor");
    return call.Into(accessor, refcon, arguments...);
}

int AccessorValue::GetInt() {
    return call(accessors.readInt, accessors.readRefcon);
}

void AccessorValue::SetInt(int value) {
    call(accessors.writeInt, accessors.writeRefcon, value);
}

float AccessorValue::GetFloat() {
    return call(accessors.readFloat, accessors.readRefcon);
}

void AccessorValue::SetFloat(float value) {
    call(accessors.writeFloat, accessors.writeRefcon, value);
}

double AccessorValue::GetDouble() {
    return call(accessors.readDouble, accessors.readRefcon);
}

void AccessorValue::SetDouble(double value) {
    call(accessors.writeDouble, accessors.writeRefcon, value);
}

int AccessorValue::GetInts(int* values, int offset, int max) {
    return call(accessors.readInts, accessors.readRefcon, values, offset, max);
}

void AccessorValue::SetInts(int* values, int offset, int count) {
    call(accessors.writeInts, accessors.writeRefcon, values, offset, count);
}

int AccessorValue::GetFloats(float* values, int offset, int max) {
    return call(accessors.readFloats, accessors.readRefcon, values, offset, max);
}

void AccessorValue::SetFloats(float* values, int offset, int count) {
    call(accessors.writeFloats, accessors.writeRefcon, values, offset, count);
}

int AccessorValue::GetBytes(void* values, int offset, int max) {
    return call(accessors.readBytes, accessors.readRefcon, values, offset, max);
}

void AccessorValue::SetBytes(void* values, int offset, int count) {
    call(accessors.writeBytes, accessors.writeRefcon, values, offset, count);
}

} // namespace headless
