// The names that enumerated values and bits have. Pure functions.
#pragma once

#include "api/bacnet/Enums.h"

#include <cstdint>
#include <string>
#include <vector>

// Of the values from 0 on, without a gap; none for ENUM_NONE.
std::vector<std::string> EnumNames(ENUM_TYPE_ID type);
std::string BitName(ENUM_TYPE_ID type, unsigned bit);
// What a field shows of a value without a name.
std::string NumberOfEnum(std::uint32_t value);
