// Elements in a buffer: where they lie and what they refer to, with every reference checked against the buffer. Shared
// by encoding, printing, comparing and the typed values. Any thread.
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Records.h"
#include "api/bacnet/Types.h"
#include "platform/stack/schema/TypeTable.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace bacnet {

template <typename Value>
Value LoadAs(const void* from) {
    Value value;
    std::memcpy(&value, from, sizeof(Value));
    return value;
}

// A buffer that references count from, as somebody reads it.
struct BufferView {
    const std::uint8_t* Base = nullptr;
    std::size_t Size = 0;

    static BufferView Of(const BACSTAC_PROPERTY_CONTENTS& contents) {
        return {static_cast<const std::uint8_t*>(contents.Buffer), contents.BufferSize};
    }
    bool Holds(std::uint64_t offset, std::uint64_t size) const { return offset + size <= Size; }
};

// Size of the element at offset: of the type, or of that string. 0 when it does not lie within the buffer.
inline std::size_t ElementSize(const BufferView& buffer, const TypeInfo& type, std::size_t offset) {
    if (type.Size != 0)
        return buffer.Holds(offset, type.Size) ? type.Size : 0;
    if (offset >= buffer.Size)
        return 0;
    if (type.Type == TYPE_STRING) {
        const void* end = std::memchr(buffer.Base + offset, 0, buffer.Size - offset);
        return end == nullptr ? 0 : static_cast<const std::uint8_t*>(end) - (buffer.Base + offset) + std::size_t{1};
    }
    if (!buffer.Holds(offset, sizeof(std::uint32_t)))
        return 0;
    const std::uint64_t length = LoadAs<std::uint32_t>(buffer.Base + offset);
    const std::uint64_t size = sizeof(std::uint32_t) + (length + 3) / 4 * 4;
    return buffer.Holds(offset, size) ? static_cast<std::size_t>(size) : 0;
}

// Calls visit(const std::uint8_t* element) for count elements from offset on; false when one does not lie within the
// buffer or visit returns false.
template <typename Visit>
bool ForEachElement(const BufferView& buffer, const TypeInfo& type, std::uint64_t offset, std::uint32_t count,
                    Visit visit) {
    for (std::uint32_t i = 0; i < count; ++i) {
        if (offset > buffer.Size)
            return false;
        const std::size_t size = ElementSize(buffer, type, static_cast<std::size_t>(offset));
        if (size == 0 || !visit(buffer.Base + offset))
            return false;
        offset += size;
    }
    return true;
}

// An element of a type of strings, at the offset that a record holds; an empty one when it does not lie within the
// buffer.
inline const std::uint8_t* StringAt(const BufferView& buffer, BACSTAC_DATA_TYPE type, std::uint32_t offset) {
    static constexpr std::uint8_t EMPTY[sizeof(std::uint32_t)] = {};
    const bool held = offset != 0 && ElementSize(buffer, *FindType(type), offset) != 0;
    return held ? buffer.Base + offset : EMPTY;
}

// Whether the optional member is there.
inline bool IsPresent(const Member& member, const std::uint8_t* record) {
    switch (member.Optional) {
    case Presence::required:
        return true;
    case Presence::sentinel:
        return LoadAs<std::uint32_t>(record + member.Offset) != member.Absent;
    case Presence::flagged:
        return (LoadAs<std::uint32_t>(record + member.PresenceOffset) & member.PresenceBits) != 0;
    }
    return false;
}

// The alternative that the choice's record holds; null when none is listed under its number.
inline const Member* ChosenMember(const TypeInfo& choice, const std::uint8_t* record) {
    const auto number = LoadAs<std::uint32_t>(record);
    for (const Member& member : choice.Members) {
        if (member.Choice == number)
            return &member;
    }
    return nullptr;
}

} // namespace bacnet
