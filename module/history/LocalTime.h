// Local date and time to seconds since 1970, for the many time stamps of a log buffer. One thread uses one converter;
// the time zone is that of the process.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>

class CLocalTimeConverter {
public:
    // As the local-time conversion of the C library gives it, with the daylight flag unknown: fields out of their range
    // carry over into the next. VFI_NO_TIME when the result does not lie in 0..0xFFFFFFFE.
    //
    // Where an hour comes twice the first one is meant, and a time that the clock leaps over counts on from before the
    // leap. The C library leaves both to the calls before; here one time stamp always gives one result, so that a
    // record that is read twice is stored twice alike.
    std::uint32_t ToSeconds(const BACSTAC_DATE_TIME& time);

private:
    // A day or an hour over which seconds are counted on from its begin, if no change of the clock is near.
    struct Span {
        std::uint64_t key = ~std::uint64_t{0}; // of no date
        std::int64_t begin = 0;
        bool even = false;
    };

    Span m_day;
    Span m_hour;
};
