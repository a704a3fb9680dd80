// The event algorithms of the standard by example: parameters of an event enrollment, values that it is shown, and what
// it tells of them. The monitored property is the present value of analog value 1; where two are compared, the other
// one is that of analog value 2, a real of 20.
#pragma once

#include "simulator/model/Value.h"

#include <cstdint>
#include <ostream>
#include <vector>

namespace sim::testing {

// Values of the monitored property, one after the other, and the state that each leads to.
struct Step {
    Value Present;
    std::uint32_t State;
};

struct Algorithm {
    const char* Name;
    std::uint32_t Type;
    const char* Parameters; // without a delay
    std::vector<Step> Steps;
    const char* Values; // of the first event
};

// As tests are named.
inline void PrintTo(const Algorithm& algorithm, std::ostream* to) {
    *to << algorithm.Name;
}

inline Value Flags(std::initializer_list<unsigned> bits) {
    return Value::BitString(3, bits);
}

inline const std::vector<Algorithm>& Algorithms() {
    static const std::vector<Algorithm> all = {
        {"ChangeOfBitstring",
         0,
         "0E 09 00 1A 05 C0 2E 82 05 40 2F 0F",
         {{Flags({0}), 0}, {Flags({1, 2}), 2}, {Flags({1}), 2}, {Flags({0, 1}), 0}},
         "0E 0A 05 60 1A 04 00 0F"},
        {"ChangeOfBinaryState",
         1,
         "1E 09 00 1E 19 01 1F 1F",
         {{Value::Enumerated(0), 0}, {Value::Enumerated(1), 2}, {Value::Enumerated(0), 0}},
         "1E 0E 19 01 0F 1A 04 00 1F"},
        {"ChangeOfUnsignedState",
         1,
         "1E 09 00 1E B9 02 B9 03 1F 1F",
         {{Value::Unsigned(1), 0}, {Value::Unsigned(3), 2}, {Value::Unsigned(4), 0}},
         "1E 0E B9 03 0F 1A 04 00 1F"},
        {"ChangeOfBooleanState",
         1,
         "1E 09 00 1E 09 01 1F 1F",
         {{Value::Boolean(false), 0}, {Value::Boolean(true), 2}},
         "1E 0E 09 01 0F 1A 04 00 1F"},
        {"CommandFailure",
         3,
         "3E 09 00 1E 0C 00 80 00 02 19 55 1F 3F",
         {{Value::Real(20), 0}, {Value::Real(21), 2}, {Value::Real(20), 0}},
         "3E 0E 44 41 A8 00 00 0F 1A 04 00 2E 44 41 A0 00 00 2F 3F"},
        {"FloatingLimit",
         4,
         "4E 09 00 1E 0C 00 80 00 02 19 55 1F 2C 40 00 00 00 3C 40 A0 00 00 4C 3F 80 00 00 4F",
         {{Value::Real(20), 0},
          {Value::Real(26), 3},
          {Value::Real(24.5F), 3},
          {Value::Real(23.5F), 0},
          {Value::Real(17), 4},
          {Value::Real(18.5F), 4},
          {Value::Real(19.5F), 0}},
         "4E 0C 41 D0 00 00 1A 04 00 2C 41 A0 00 00 3C 40 A0 00 00 4F"},
        {"OutOfRange",
         5,
         "5E 09 00 1C 41 20 00 00 2C 41 F0 00 00 3C 40 00 00 00 5F",
         {{Value::Real(30), 0}, {Value::Real(31), 3}, {Value::Real(28), 3}, {Value::Real(9), 4}, {Value::Real(13), 0}},
         "5E 0C 41 F8 00 00 1A 04 00 2C 40 00 00 00 3C 41 F0 00 00 5F"},
        {"UnsignedRange",
         11,
         "BE 09 00 19 0A 29 1E BF",
         {{Value::Unsigned(10), 0}, {Value::Unsigned(9), 4}, {Value::Unsigned(10), 0}, {Value::Unsigned(31), 3}},
         "BE 09 09 1A 04 00 29 0A BF"},
        {"DoubleOutOfRange",
         14,
         "EE 09 00 1D 08 40 24 00 00 00 00 00 00 2D 08 40 3E 00 00 00 00 00 00 3D 08 40 00 00 00 00 00 00 00 EF",
         {{Value::Double(20), 0}, {Value::Double(31), 3}, {Value::Double(28), 3}, {Value::Double(27), 0}},
         "EE 0D 08 40 3F 00 00 00 00 00 00 1A 04 00 2D 08 40 00 00 00 00 00 00 00 3D 08 40 3E 00 00 00 00 00 00 EF"},
        {"SignedOutOfRange",
         15,
         "FE 0F 09 00 19 F6 29 0A 39 02 FF 0F",
         {{Value::Signed(0), 0}, {Value::Signed(-11), 4}, {Value::Signed(-8), 4}, {Value::Signed(-7), 0}},
         "FE 0F 09 F5 1A 04 00 29 02 39 F6 FF 0F"},
        {"UnsignedOutOfRange",
         16,
         "FE 10 09 00 19 0A 29 1E 39 02 FF 10",
         {{Value::Unsigned(20), 0}, {Value::Unsigned(31), 3}, {Value::Unsigned(28), 3}, {Value::Unsigned(27), 0}},
         "FE 10 09 1F 1A 04 00 29 02 39 1E FF 10"},
        {"ChangeOfCharacterString",
         17,
         "FE 11 09 00 1E 75 05 00 46 69 72 65 1F FF 11",
         {{Value::String("Calm"), 0}, {Value::String("Fire"), 2}, {Value::String("Calm"), 0}},
         "FE 11 0D 05 00 46 69 72 65 1A 04 00 2D 05 00 46 69 72 65 FF 11"},
        {"ChangeOfStatusFlags",
         18,
         "FE 12 09 00 1A 04 C0 FF 12",
         {{Value::BitString(4, {3}), 0}, {Value::BitString(4, {1, 3}), 2}, {Value::BitString(4, {}), 0}},
         "FE 12 1A 04 50 FF 12"},
    };
    return all;
}

} // namespace sim::testing
