// Real numbers as integers. Pure, any thread.
#pragma once

#include <limits>

// Cut off behind the point; the nearest limit for what lies beyond, 0 for what is no number.
template <class Integer>
constexpr Integer Saturate(double value) {
    if (value != value)
        return 0;
    if (value <= static_cast<double>(std::numeric_limits<Integer>::min()))
        return std::numeric_limits<Integer>::min();
    if (value >= static_cast<double>(std::numeric_limits<Integer>::max()))
        return std::numeric_limits<Integer>::max();
    return static_cast<Integer>(value);
}
