// Wall time and tick counter of the machine, behind a seam for tests. Any thread may call it.
#pragma once

#include "api/bacnet/BacGeneral.h"

#include <cstdint>

class IClock {
public:
    virtual ~IClock() = default;
    // Local time with milliseconds.
    virtual SYSTEM_TIME GetLocalSystemTime() const = 0;
    // Milliseconds of a clock that is never set, cut to 32 bits: it wraps after 49.7 days, so only differences of two
    // values, taken as unsigned 32 bits, mean anything.
    virtual std::uint32_t TickCount() const = 0;
};

class CSystemClock : public IClock {
public:
    SYSTEM_TIME GetLocalSystemTime() const override;
    std::uint32_t TickCount() const override;
};
