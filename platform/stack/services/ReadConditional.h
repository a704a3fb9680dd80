// The request of ReadPropertyConditional (clause 15.6 of ANSI/ASHRAE 135-2004; later editions dropped the service, old
// devices have it). Its answer is that of ReadPropertyMultiple: see RpmAckReader. Any thread; no allocation.
#pragma once

#include "api/bacnet/Services.h"

namespace bacnet {

class Writer;

// False when a comparison value cannot be encoded; part of the request is then written.
bool EncodeReadConditional(const BACSTAC_READ_CON_INFO& info, Writer& writer);

} // namespace bacnet
