#include "headless/xplm/data/DatarefAccess.h"

namespace headless {

bool DatarefAccess::CanWrite(XPLMDataRef handle) {
    const Dataref* dataref = table.Resolve(handle, "XPLMCanWriteDataRef");
    return dataref != nullptr && dataref->Definition().writable;
}

XPLMDataTypeID DatarefAccess::Types(XPLMDataRef handle) {
    const Dataref* dataref = table.Resolve(handle, "XPLMGetDataRefTypes");
    return dataref == nullptr ? xplmType_Unknown : dataref->Definition().types;
}

int DatarefAccess::GetInt(XPLMDataRef handle) {
    IDatarefValue* value = readable(handle, xplmType_Int, "XPLMGetDatai");
    return value == nullptr ? 0 : value->GetInt();
}

void DatarefAccess::SetInt(XPLMDataRef handle, int value) {
    record("XPLMSetDatai", handle, value);
    if (IDatarefValue* target = writable(handle, xplmType_Int, "XPLMSetDatai")) {
        target->SetInt(value);
    }
}

float DatarefAccess::GetFloat(XPLMDataRef handle) {
    IDatarefValue* value = readable(handle, xplmType_Float, "XPLMGetDataf");
    return value == nullptr ? 0.0F : value->GetFloat();
}

void DatarefAccess::SetFloat(XPLMDataRef handle, float value) {
    record("XPLMSetDataf", handle, value);
    if (IDatarefValue* target = writable(handle, xplmType_Float, "XPLMSetDataf")) {
        target->SetFloat(value);
    }
}

double DatarefAccess::GetDouble(XPLMDataRef handle) {
    IDatarefValue* value = readable(handle, xplmType_Double, "XPLMGetDatad");
    return value == nullptr ? 0.0 : value->GetDouble();
}

void DatarefAccess::SetDouble(XPLMDataRef handle, double value) {
    record("XPLMSetDatad", handle, value);
    if (IDatarefValue* target = writable(handle, xplmType_Double, "XPLMSetDatad")) {
        target->SetDouble(value);
    }
}

int DatarefAccess::GetInts(XPLMDataRef handle, int* values, int offset, int max) {
    IDatarefValue* value = readable(handle, xplmType_IntArray, "XPLMGetDatavi");
    return value == nullptr ? 0 : value->GetInts(values, offset, max);
}

void DatarefAccess::SetInts(XPLMDataRef handle, int* values, int offset, int count) {
    record("XPLMSetDatavi", handle, offset, count);
    if (IDatarefValue* target = writable(handle, xplmType_IntArray, "XPLMSetDatavi")) {
        target->SetInts(values, offset, count);
    }
}

int DatarefAccess::GetFloats(XPLMDataRef handle, float* values, int offset, int max) {
    IDatarefValue* value = readable(handle, xplmType_FloatArray, "XPLMGetDatavf");
    return value == nullptr ? 0 : value->GetFloats(values, offset, max);
}

void DatarefAccess::SetFloats(XPLMDataRef handle, float* values, int offset, int count) {
    record("XPLMSetDatavf", handle, offset, count);
    if (IDatarefValue* target = writable(handle, xplmType_FloatArray, "XPLMSetDatavf")) {
        target->SetFloats(values, offset, count);
    }
}

int DatarefAccess::GetBytes(XPLMDataRef handle, void* values, int offset, int max) {
    IDatarefValue* value = readable(handle, xplmType_Data, "XPLMGetDatab");
    return value == nullptr ? 0 : value->GetBytes(values, offset, max);
}

void DatarefAccess::SetBytes(XPLMDataRef handle, void* values, int offset, int count) {
    record("XPLMSetDatab", handle, offset, count);
    if (IDatarefValue* target = writable(handle, xplmType_Data, "XPLMSetDatab")) {
        target->SetBytes(values, offset, count);
    }
}

IDatarefValue* DatarefAccess::readable(XPLMDataRef handle, XPLMDataTypeID type,
                                       const char* function) {
    record(function, handle);
    const Dataref* dataref = offering(handle, type, function);
    return dataref == nullptr ? nullptr : &dataref->Value();
}

IDatarefValue* DatarefAccess::writable(XPLMDataRef handle, XPLMDataTypeID type,
                                       const char* function) {
    const Dataref* dataref = offering(handle, type, function);
    if (dataref == nullptr) {
        return nullptr;
    }
    if (!dataref->Definition().writable) {
        recorder.Refuse(Refusal::ReadOnly, function, dataref->Definition().name.c_str());
        return nullptr;
    }
    return &dataref->Value();
}

Dataref* DatarefAccess::offering(XPLMDataRef handle, XPLMDataTypeID type, const char* function) {
    Dataref* dataref = table.Resolve(handle, function);
    if (dataref != nullptr && !dataref->Offers(type)) {
        recorder.Refuse(Refusal::WrongType, function, dataref->Definition().name.c_str());
        return nullptr;
    }
    return dataref;
}

} // namespace headless
