// Values for properties that nobody gave one: of the type that the standard gives the property, as plain as such a
// value can be. Constant; any thread.
#pragma once

#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/Value.h"

namespace sim {

// One value of the type, encoded. Of choices and of types with alternatives (calendar entries, recipients, event
// parameters and so on) alternative number which, modulo how many there are; optional members are there for odd ones.
Value DefaultElement(BACSTAC_DATA_TYPE type, unsigned which = 0);

// How many alternatives a type has to show; 1 for most.
unsigned Alternatives(BACSTAC_DATA_TYPE type);

// A value of the property's type and shape for an object. full: lists and arrays show an element of each alternative;
// otherwise lists and arrays without a fixed size are empty.
Value DefaultValue(BACSTAC_OBJECT_ID object, const bacnet::PropertyInfo& property, bool full);

} // namespace sim
