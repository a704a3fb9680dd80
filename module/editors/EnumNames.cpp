#include "module/editors/EnumNames.h"

#include "api/bacnet/BacGeneral.h"

std::vector<std::string> EnumNames(ENUM_TYPE_ID type) {
    std::vector<std::string> names(CBacGeneral::GetEnumCount(type));
    for (unsigned value = 0; value < names.size(); ++value)
        names[value] = CBacGeneral::GetEnumString(type, value);
    return names;
}

std::string BitName(ENUM_TYPE_ID type, unsigned bit) {
    const char* const name = CBacGeneral::GetEnumString(type, bit);
    return name ? name : "bit-" + std::to_string(bit);
}

// Deliberate: the largest numbers are shown as negative ones.
std::string NumberOfEnum(std::uint32_t value) {
    return std::to_string(static_cast<std::int32_t>(value));
}
