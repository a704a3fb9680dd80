// The forms of a property state (BACnetPropertyStates, ANSI/ASHRAE 135 clause 21) that have an editor.
#pragma once

#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Records.h"

#include <memory>
#include <span>

struct PropertyStateForm {
    const char* name;
    BACSTAC_DATA_TYPE dataType;
    BACSTAC_PROPERTY_ID property; // that has the state's enumeration; PROP_NO_PROPERTY for none
};

std::span<const PropertyStateForm> PropertyStateForms(); // by BACSTAC_PROPERTY_STATE::Type

// The state as a value of its form: its bytes are taken as they lie, whatever form they had. Null for forms beyond the
// table.
std::unique_ptr<CPropertyValue> ReadState(const BACSTAC_PROPERTY_STATE& state);
void WriteState(const CPropertyValue& value, BACSTAC_PROPERTY_STATE& state);
