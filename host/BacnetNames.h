// Names of object types and properties that a configuration file may use in place of numbers: the standard's own
// (ANSI/ASHRAE 135, clause 21), lower case with hyphens.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

std::optional<std::uint32_t> ObjectTypeByName(std::string_view name);
std::optional<std::uint32_t> PropertyByName(std::string_view name);
