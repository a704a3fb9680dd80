#include "module/editors/PropertyStates.h"

#include "api/bacnet/Enums.h"

namespace {

// By the properties that have the enumerations.
constexpr PropertyStateForm FORMS[] = {
    {"boolean-value", TYPE_BOOLEAN, PROP_NO_PROPERTY},
    {"binary-value", TYPE_ENUMERATED, PROP_PRESENT_VALUE},
    {"event-type", TYPE_ENUMERATED, 37},
    {"polarity", TYPE_ENUMERATED, 84},
    {"program-change", TYPE_ENUMERATED, 90},
    {"program-state", TYPE_ENUMERATED, 92},
    {"reason-for-halt", TYPE_ENUMERATED, 100},
    {"reliability", TYPE_ENUMERATED, 103},
    {"state", TYPE_ENUMERATED, 36},
    {"system-status", TYPE_ENUMERATED, 112},
    {"units", TYPE_ENUMERATED, 117},
    {"unsigned-value", TYPE_UNSIGNED, PROP_NO_PROPERTY},
    {"life-safety-mode", TYPE_ENUMERATED, 160},
    {"life-safety-state", TYPE_ENUMERATED, 164},
    {"restart-reason", TYPE_ENUMERATED, 196},
    {"door-alarm-state", TYPE_ENUMERATED, 226},
};

} // namespace

std::span<const PropertyStateForm> PropertyStateForms() {
    return FORMS;
}

// As properties of an event enrollment, for which the tables of enumerations know all of them.
std::unique_ptr<CPropertyValue> ReadState(const BACSTAC_PROPERTY_STATE& state) {
    if (state.Type >= std::size(FORMS))
        return nullptr;
    const PropertyStateForm& form = FORMS[state.Type];
    std::unique_ptr<CPropertyValue> value(
        CPropertyValue::CreateValue(OBJ_EVENT_ENROLLMENT, form.property, form.dataType, -1));
    if (value && !value->ReadFrom(&state.Value))
        value.reset();
    return value;
}

void WriteState(const CPropertyValue& value, BACSTAC_PROPERTY_STATE& state) {
    CHeap heap;
    state.Value = 0; // a boolean is shorter
    value.WriteTo(&state.Value, heap);
}
