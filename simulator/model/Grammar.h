// What encoded values are made of, by the table of types: takes the value of an array or a list apart into elements,
// and tells whether a value that a client writes is of the type that it has to be. Looks at the octets alone and
// decodes nothing, so that the devices do not judge by the stack's decoder, which they test. Any thread; no state.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace sim {

using WireElements = std::vector<std::span<const std::uint8_t>>;

// The elements of octets, all of that type, one behind the other. TYPE_ANY: any primitive, or what one pair of opening
// and closing tags encloses. TYPE_NONE, for types without a description: the same. Nothing when the octets are anything
// else.
std::optional<WireElements> SplitElements(std::span<const std::uint8_t> octets, BACSTAC_DATA_TYPE type);

// Whether octets are one value of that type, and nothing besides. TYPE_NONE: any well-formed octets.
bool IsOneOf(std::span<const std::uint8_t> octets, BACSTAC_DATA_TYPE type);

// Application tag of a lone primitive; -1 for anything else.
int PrimitiveTagOf(std::span<const std::uint8_t> octets);

// A lone character string as UTF-8; empty for all else.
std::string TextIn(std::span<const std::uint8_t> octets);

// A lone number of any type, to compare; nothing for all else.
std::optional<double> NumberIn(std::span<const std::uint8_t> octets);

} // namespace sim
