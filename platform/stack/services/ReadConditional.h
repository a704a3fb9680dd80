// The request of ReadPropertyConditional (clause 15.6 of ANSI/ASHRAE 135-2004; later editions dropped the service, old
// devices have it), and the walk over its answer. Any thread; no allocation.
#pragma once

#include "api/bacnet/Services.h"
#include "platform/stack/codec/Reader.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Writer;

// False when a comparison value cannot be encoded; part of the request is then written.
bool EncodeReadConditional(const BACSTAC_READ_CON_INFO& info, Writer& writer);

// The next object of an answer. octets are all of it, for an RpmAckReader; none when the object has no list of results.
// False at the end and on a fault; the reader's Ok tells which.
bool NextSelectedObject(Reader& reader, BACSTAC_OBJECT_ID& object, std::span<const std::uint8_t>& octets);

} // namespace bacnet
