// Object types and properties by name, as people write them in configuration files and on command lines. The names are
// the standard's own (ANSI/ASHRAE 135 clause 21) from the stack's tables, lower case with hyphens. Pure functions, any
// thread.
#pragma once

#include "api/bacnet/Types.h"

#include <optional>
#include <string_view>

inline constexpr std::uint32_t MAX_OBJECT_TYPE = 1023; // 10 bits
inline constexpr std::uint32_t MAX_PROPERTY = 4194303; // 22 bits

// By the standard's name alone.
std::optional<BACSTAC_OBJECT_TYPE> ObjectTypeByName(std::string_view name);
std::optional<BACSTAC_PROPERTY_ID> PropertyByName(std::string_view name);

// By name, by the usual abbreviation ("ai", "pv") or by number, whatever the case.
std::optional<BACSTAC_OBJECT_TYPE> ObjectTypeByText(std::string_view text);
std::optional<BACSTAC_PROPERTY_ID> PropertyByText(std::string_view text);
