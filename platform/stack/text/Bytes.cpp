// Small operations on the contract's records: bits, contents, narrow text.
#include "api/bacnet/BacGeneral.h"
#include "platform/stack/codec/CharacterSet.h"

namespace {

constexpr unsigned MOST_BITS = 8 * sizeof(BACSTAC_BIT_STRING::Bits);

} // namespace

bool CBacGeneral::TestBitStringBit(BACSTAC_BIT_STRING const& value, unsigned bit) {
    return bit < value.BitCount && bit < MOST_BITS && ((value.Bits[bit / 8] >> (bit % 8)) & 1) != 0;
}

void CBacGeneral::SetBitStringBit(BACSTAC_BIT_STRING& value, unsigned bit, bool set) {
    if (bit >= MOST_BITS)
        return;
    for (; value.BitCount <= bit; ++value.BitCount) // what lies beyond the end may be anything
        value.Bits[value.BitCount / 8] &= static_cast<std::uint8_t>(~(1U << (value.BitCount % 8)));
    const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
    if (set)
        value.Bits[bit / 8] |= mask;
    else
        value.Bits[bit / 8] &= static_cast<std::uint8_t>(~mask);
}

void CBacGeneral::InitContentsToBuf(BACSTAC_PROPERTY_CONTENTS* contents, void const* data, unsigned size) {
    contents->DataType = TYPE_NONE;
    contents->Buffer = const_cast<void*>(data); // contents have one kind of pointer; who only reads does not write
    contents->BufferSize = size;
    contents->ElementCount = 0;
}

std::string ansi_to_utf8(const std::string& text) {
    return bacnet::ToUtf8(text);
}
