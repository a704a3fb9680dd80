// Values in a description of a simulation: what a TOML value is as a value of a property. Any thread; no state.
#pragma once

#include "simulator/model/Value.h"

#include <toml++/toml.h>

#include <cstdint>
#include <optional>

namespace sim {

// Nothing for a date and time that carries a time zone or does not exist.
std::optional<BACSTAC_DATE_TIME> DateTimeOf(const toml::node& node);

// A whole number in that range.
std::optional<std::int64_t> WholeOf(const toml::node& node, std::int64_t low, std::int64_t high);

// A property's value: its type is the standard's where there is one, otherwise the value itself has to tell it.
std::optional<Value> PropertyValueOf(const toml::node& node, BACSTAC_OBJECT_TYPE object, BACSTAC_PROPERTY_ID property);

} // namespace sim
