#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/schema/ObjectTypes.h"

namespace bacnet {
namespace {

// A single value of any type is what it is; an array or list has elements that say what they are.
DecodeResult DecodeAnyOf(std::span<const std::uint8_t> encoded, bool single, BACSTAC_PROPERTY_CONTENTS& contents) {
    return single ? DecodeResult::malformed : DecodeElements(encoded, *FindType(TYPE_ANY), false, contents);
}

} // namespace

DecodeResult DecodeProperty(std::span<const std::uint8_t> encoded, BACSTAC_OBJECT_TYPE objectType,
                            BACSTAC_PROPERTY_ID property, int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents) {
    const PropertyInfo* info = FindProperty(objectType, property);
    const bool size = arrayIndex == 0;
    const TypeInfo* type = size ? FindType(TYPE_UNSIGNED) : info != nullptr ? FindType(info->Type) : nullptr;
    const bool single = arrayIndex >= 0 || (info != nullptr && info->Shape == PropertyShape::single);
    if (type != nullptr) {
        const DecodeResult result = type->Type == TYPE_ANY ? DecodeAnyOf(encoded, single, contents)
                                                           : DecodeElements(encoded, *type, single, contents);
        if (result == DecodeResult::noRoom && single) {
            contents.DataType = TYPE_NONE;
            contents.ElementCount = 0;
        }
        if (result != DecodeResult::malformed)
            return result;
    }
    return DecodeUntyped(encoded, contents);
}

} // namespace bacnet
