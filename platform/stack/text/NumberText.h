// Texts for numbers without a name, as pointers that stay valid for a while: functions that answer with fixed strings
// answer with these for all other numbers.
#pragma once

#include <cstdint>

namespace bacnet {

// before, the decimal number, after. The pointer is valid on this thread until it has asked for another 64 texts.
const char* NumberText(const char* before, std::uint32_t number, const char* after);

} // namespace bacnet
