// Property values between their encoding and the records in contents buffers (ANSI/ASHRAE 135 clauses 20.2 and 21), by
// the type table. Used by every service that carries values, on any thread. Nothing here allocates or throws.
//
// A decoded buffer holds the elements from its start, one behind the other. What they refer to lies at the end of the
// buffer, at the offsets that the records say; so copies of the whole buffer stay whole.
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Types.h"
#include "platform/stack/codec/Tag.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/schema/TypeTable.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace bacnet {

enum class DecodeResult : std::uint8_t {
    ok,
    raw,       // well-formed, but of no type that is known: contents are TYPE_RAW with the octets as they came
    noRoom,    // the buffer is too small: contents hold the elements that fit, none if it is a single one
    malformed, // no tagged values at all: contents hold nothing (TYPE_NONE)
};

// Decodes the value of a property as ReadProperty carries it, between its opening and closing tags, into
// contents.Buffer, and sets DataType and ElementCount. The type is the one that the standard gives the property; a
// value that is not of that type is taken by its application tags, and one without them is kept raw. arrayIndex: as it
// was asked for; 0 is the array's size.
DecodeResult DecodeProperty(std::span<const std::uint8_t> encoded, BACSTAC_OBJECT_TYPE objectType,
                            BACSTAC_PROPERTY_ID property, int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents);

// Decodes values that stand one behind the other, all of this type; what the elements of a log buffer are (types 39, 54
// and 55). On malformed, contents hold the elements before the fault, and fault, if wanted, says where and what it is.
struct DecodeFault {
    DecodeError Error = DecodeError::none;
    std::size_t Offset = 0;
};
DecodeResult DecodeRecords(std::span<const std::uint8_t> encoded, BACSTAC_DATA_TYPE type,
                           BACSTAC_PROPERTY_CONTENTS& contents, DecodeFault* fault = nullptr);

// As DecodeRecords, but empty octets are one element where the type may be made of nothing and single is set.
DecodeResult DecodeElements(std::span<const std::uint8_t> encoded, const TypeInfo& type, bool single,
                            BACSTAC_PROPERTY_CONTENTS& contents, DecodeFault* fault = nullptr);

// Decodes octets that no table describes: primitives by their tags, all else raw.
DecodeResult DecodeUntyped(std::span<const std::uint8_t> encoded, BACSTAC_PROPERTY_CONTENTS& contents);

// Writes all elements as WriteProperty carries them, by their own data type; raw contents as they are. False when the
// contents cannot be encoded (no value, an unknown type, a reference that leads out of the buffer). The writer's
// overflow is the caller's to test. The type is not compared with the property's: the device is the judge of that.
bool EncodeContents(Writer& writer, const BACSTAC_PROPERTY_CONTENTS& contents);
// One element of a type, at element within a buffer of size bytes that starts at base. tag: APPLICATION, or the context
// tag that a primitive has or that encloses a constructed value.
bool EncodeElement(Writer& writer, BACSTAC_DATA_TYPE type, int tag, const void* base, std::size_t size,
                   const void* element);

// Address of element index within contents; null past the end and for an unknown type. Elements of strings are found
// by walking.
const void* FindElement(const BACSTAC_PROPERTY_CONTENTS& contents, std::uint32_t index);
// Bytes that the elements take from the start of the buffer, without what they refer to.
std::size_t ElementsSize(const BACSTAC_PROPERTY_CONTENTS& contents);

} // namespace bacnet
