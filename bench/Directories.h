// Directories like those of large sites, and what they take.
#pragma once

#include "api/bacnet/Dir.h"

namespace bench {

// Devices of instances from 1, each with its analog inputs and binary values of instances from 1, named and described.
CBACnetDir NewDirectory(unsigned devices, unsigned objectsOfADevice);

// Of the heap; what something takes is the difference.
double BytesInUse();

} // namespace bench
