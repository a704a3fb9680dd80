// Extra property values of directory entries, as the directory file keeps them: what is needed to make the value again,
// and the value in the encoding of the standard (clause 20.2).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class CPropertyValue;

namespace bacnet::directory {

struct StoredValue {
    std::uint32_t ObjectType = 0;
    std::int32_t DataType = 0;    // of the value, TYPE_RAW or more
    std::int32_t ElementType = 0; // of what is encoded, which tells an any-value's type
    bool List = false;
    std::string Encoding;
};

// False when the value has no encoding, such as a value of any type that holds none, and when what it encodes to is not
// read back.
bool StoreValue(std::uint32_t property, const CPropertyValue& value, StoredValue& stored);

// null when the bytes are no value of that type.
std::unique_ptr<CPropertyValue> RestoreValue(std::uint32_t property, const StoredValue& stored);

} // namespace bacnet::directory
