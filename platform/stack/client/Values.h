// Encoded values into the contents of callers. Any thread; no state.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/services/ReadProperty.h"

#include <cstdint>
#include <span>

namespace bacnet {

// Decodes what a device answered for target. BACSTAC_OK with a negative data type: a value that its type does not
// allow, kept raw. Text that is longer than the buffer is cut. BACSTAC_STATUS_BUFFER_TOO_SMALL: anything else that does
// not fit; the contents hold nothing then, as they do for octets that are no value at all
// (BACSTAC_STATUS_INVALID_ANSWER).
BACSTAC_STATUS ValueInto(std::span<const std::uint8_t> value, const PropertyTarget& target,
                         BACSTAC_PROPERTY_CONTENTS& contents);

// Decodes the items of a ReadRange answer: as many as fit, and up to one that is damaged. dropped tells whether some
// are missing. An error only when there is none.
BACSTAC_STATUS ItemsInto(std::span<const std::uint8_t> items, const PropertyTarget& target,
                         BACSTAC_PROPERTY_CONTENTS& contents, bool& dropped);

} // namespace bacnet
