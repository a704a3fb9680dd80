// Which records of a log a ReadRange asks for (clause 15.8.1.1.4), and how many of them an answer can hold.
#pragma once

#include "simulator/model/LogBuffer.h"

#include <functional>

namespace sim {

// The records [Begin, End) in the order of the log. A negative count of the request reads backwards from its
// reference: then the records at the end are the ones asked for first.
struct LogRange {
    std::uint64_t Begin = 0;
    std::uint64_t End = 0;
    bool Backwards = false;

    bool IsEmpty() const { return Begin == End; }
    std::uint64_t Count() const { return End - Begin; }
};

// A count of 0, and a reference that names no record held, select nothing. A reference time has to be a specific one
// (see ToLocalTime); reference is its value for the two by-time kinds and not looked at otherwise.
LogRange SelectRange(const LogBuffer& log, const BACSTAC_READ_RANGE_SPEC& spec, LocalTime reference);

// The same for a plain list of count items, by position or whole: indices from 0.
LogRange SelectPositions(std::uint64_t count, const BACSTAC_READ_RANGE_SPEC& spec);

} // namespace sim
