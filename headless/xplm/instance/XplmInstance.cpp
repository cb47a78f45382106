#include "XPLMInstance.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/instance/Instances.h"
#include "headless/xplm/scenery/Objects.h"

using headless::here;
using headless::SceneryInstance;

namespace {

void place(SceneryInstance* instance, const XPLMDrawInfoDouble_t& position, const float* data) {
    if (instance == nullptr) {
        return;
    }
    instance->position = position;
    if (data != nullptr) {
        instance->values.assign(data, data + instance->datarefs.size());
    }
}

} // namespace

XPLMInstanceRef XPLMCreateInstance(XPLMObjectRef obj, const char** datarefs) {
    headless::Simulator& simulator = here();
    if (simulator.Objects().Resolve(obj) == nullptr) {
        return nullptr;
    }
    SceneryInstance instance;
    instance.object = obj;
    for (; datarefs != nullptr && *datarefs != nullptr; ++datarefs) {
        instance.datarefs.emplace_back(*datarefs);
    }
    instance.values.resize(instance.datarefs.size());
    return simulator.Instances().Add(instance);
}

void XPLMDestroyInstance(XPLMInstanceRef instance) {
    here().Instances().Remove(instance);
}

void XPLMInstanceSetPosition(XPLMInstanceRef instance, const XPLMDrawInfo_t* new_position,
                             const float* data) {
    SceneryInstance* const found = here().Instances().Resolve(instance);
    if (headless::isGiven(new_position, "position")) {
        const XPLMDrawInfo_t given = headless::takeStructure(*new_position);
        const XPLMDrawInfoDouble_t position{
            sizeof(XPLMDrawInfoDouble_t),     static_cast<double>(given.x),
            static_cast<double>(given.y),     static_cast<double>(given.z),
            static_cast<double>(given.pitch), static_cast<double>(given.heading),
            static_cast<double>(given.roll)};
        place(found, position, data);
    }
}

void XPLMInstanceSetPositionDouble(XPLMInstanceRef instance,
                                   const XPLMDrawInfoDouble_t* new_position, const float* data) {
    SceneryInstance* const found = here().Instances().Resolve(instance);
    if (headless::isGiven(new_position, "position")) {
        place(found, headless::takeStructure(*new_position), data);
    }
}

// The local frame never moves.
void XPLMInstanceSetAutoShift(XPLMInstanceRef instance) {
    here().Instances().Resolve(instance);
}
