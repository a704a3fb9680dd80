// Initial values of objects that clients create (clause 15.3). Any thread; no state.
#pragma once

#include "simulator/Config.h"
#include "simulator/model/Object.h"

namespace sim {

// Puts a value that a client gives into the description of the object, if an object of that type can have it. The type
// in object.Id counts, the instance does not.
PropertyError AddInitialValue(const WriteCommand& given, ObjectConfig& object);

} // namespace sim
