// Which properties of simulated objects a client may write. Constant data, any thread.
#pragma once

#include "api/bacnet/Types.h"

namespace sim {

// Properties that tell what an object is or does: they change by themselves or not at all. All others can be written,
// unless an object says otherwise.
bool IsReadOnly(BACSTAC_PROPERTY_ID property);

// Arrays whose size the standard fixes, or that follow something else.
bool IsFixedArray(BACSTAC_PROPERTY_ID property);

// Types whose present value comes from the field, or from the object's own doing: it can be written only while they are
// out of service, and never where they cannot be.
bool MakesPresentValue(BACSTAC_OBJECT_TYPE type);

} // namespace sim
