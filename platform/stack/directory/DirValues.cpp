#include "platform/stack/directory/DirValues.h"

#include "api/bacnet/Enums.h"
#include "api/bacnet/PropertyValue.h"
#include "platform/stack/codec/ValueCodec.h"

#include <vector>

namespace bacnet::directory {

namespace {

constexpr std::size_t mostOctets = std::size_t{16} << 20; // a value beyond that is no property of a device

// Encodes into a string that grows until the value fits.
bool Encode(const BACSTAC_PROPERTY_CONTENTS& contents, std::string& encoding) {
    for (std::size_t size = 256; size <= mostOctets; size *= 8) {
        std::vector<std::uint8_t> octets(size);
        Writer writer(octets);
        if (!EncodeContents(writer, contents))
            return false;
        if (writer.Overflow())
            continue;
        encoding.assign(writer.Written().begin(), writer.Written().end());
        return true;
    }
    return false;
}

DecodeResult DecodeTyped(std::span<const std::uint8_t> octets, const StoredValue& stored,
                         BACSTAC_PROPERTY_CONTENTS& contents) {
    const TypeInfo* const type = FindType(stored.ElementType);
    return type == nullptr ? DecodeResult::malformed : DecodeElements(octets, *type, !stored.List, contents);
}

// Decoded records are larger than their encoding by an unknown factor: the buffer grows until they fit.
bool Decode(const StoredValue& stored, std::vector<std::max_align_t>& memory, BACSTAC_PROPERTY_CONTENTS& contents) {
    const std::span octets(reinterpret_cast<const std::uint8_t*>(stored.Encoding.data()), stored.Encoding.size());
    for (std::size_t size = 256 + 4 * octets.size(); size <= 64 * mostOctets; size *= 8) {
        memory.assign(size / sizeof(std::max_align_t) + 1, {});
        contents = {TYPE_NONE, memory.data(), static_cast<std::uint32_t>(size), 0};
        const DecodeResult result =
            stored.ElementType < 0 ? DecodeUntyped(octets, contents) : DecodeTyped(octets, stored, contents);
        if (result != DecodeResult::noRoom)
            return result == DecodeResult::ok || (result == DecodeResult::raw && stored.ElementType == TYPE_RAW);
    }
    return false;
}

} // namespace

bool StoreValue(std::uint32_t property, const CPropertyValue& value, StoredValue& stored) {
    CPropertyContents contents(value.GetDataSize());
    if (!value.WriteTo(contents))
        return false;
    stored.ObjectType = value.GetObjType();
    stored.DataType = value.GetDataType();
    stored.ElementType = contents.DataType;
    stored.List = value.IsCollection();
    return stored.DataType >= TYPE_RAW && stored.ElementType >= TYPE_RAW && Encode(contents, stored.Encoding) &&
           RestoreValue(property, stored) != nullptr;
}

std::unique_ptr<CPropertyValue> RestoreValue(std::uint32_t property, const StoredValue& stored) {
    std::vector<std::max_align_t> memory;
    BACSTAC_PROPERTY_CONTENTS contents{};
    if (!Decode(stored, memory, contents))
        return nullptr;
    constexpr int list = 0;
    constexpr int single = 1;
    std::unique_ptr<CPropertyValue> value(
        CPropertyValue::CreateValue(stored.ObjectType, property, stored.DataType, stored.List ? list : single));
    if (value && !value->ReadFrom(contents))
        value.reset();
    return value;
}

} // namespace bacnet::directory
