#include "headless/world/DatarefNumber.h"

namespace headless {

double DatarefNumber::Get() const {
    if (dataref == nullptr || !dataref->IsLive()) {
        return 0.0;
    }
    if (dataref->Offers(xplmType_Double | xplmType_Float | xplmType_Int)) {
        return dataref->Value().GetDouble();
    }
    float element = 0.0F;
    dataref->Value().GetFloats(&element, index, 1);
    return static_cast<double>(element);
}

void DatarefNumber::Set(double number) const {
    if (dataref == nullptr || !dataref->IsLive()) {
        return;
    }
    if (dataref->Offers(xplmType_Double | xplmType_Int)) {
        dataref->Value().SetDouble(number);
    } else if (dataref->Offers(xplmType_Float)) {
        dataref->Value().SetFloat(static_cast<float>(number));
    } else {
        auto element = static_cast<float>(number);
        dataref->Value().SetFloats(&element, index, 1);
    }
}

} // namespace headless
