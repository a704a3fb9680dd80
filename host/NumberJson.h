// Numbers as JSON, which has no word for some of them. Any thread.
#pragma once

#include <nlohmann/json_fwd.hpp>

// The number; "nan", "inf" or "-inf" as text where it is none.
nlohmann::ordered_json NumberJson(double value);
