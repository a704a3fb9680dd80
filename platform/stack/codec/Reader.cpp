#include "platform/stack/codec/Reader.h"

#include "platform/stack/codec/Octets.h"

#include <array>
#include <limits>

namespace bacnet {

const char* DecodeErrorText(DecodeError error) {
    switch (error) {
    case DecodeError::none:
        return "no error";
    case DecodeError::truncated:
        return "a length reaches beyond the end";
    case DecodeError::badTag:
        return "not a tag";
    case DecodeError::badLength:
        return "wrong length for the type";
    case DecodeError::unexpected:
        return "unexpected tag";
    case DecodeError::unbalanced:
        return "closing tag without its opening tag";
    case DecodeError::tooDeep:
        return "nested too deep";
    case DecodeError::tooMany:
        return "too many elements";
    }
    return "unknown error";
}

bool Reader::Skip(std::span<const std::uint8_t>* octets) {
    const std::uint8_t* start = m_at;
    std::array<std::uint8_t, MAX_NESTING> open;
    unsigned depth = 0;
    do {
        const std::uint8_t* where = m_at;
        Tag tag;
        if (!ReadTag(tag))
            return false;
        if (tag.Kind == TagKind::opening) {
            if (depth == MAX_NESTING)
                return FailAt(where, DecodeError::tooDeep);
            open[depth++] = tag.Number;
        } else if (tag.Kind == TagKind::closing) {
            if (depth == 0 || open[depth - 1] != tag.Number)
                return FailAt(where, DecodeError::unbalanced);
            --depth;
        } else {
            m_at += tag.Length;
        }
    } while (depth != 0);
    if (octets != nullptr)
        *octets = {start, static_cast<std::size_t>(m_at - start)};
    return true;
}

bool Reader::Enclosed(unsigned number, std::span<const std::uint8_t>& content) {
    if (!Ok())
        return false;
    if (!IsOpening(number))
        return Fail(AtEnd() ? DecodeError::truncated : DecodeError::unexpected);
    std::span<const std::uint8_t> all;
    if (!Skip(&all))
        return false;
    const std::size_t tagSize = number < 15 ? 1 : 2; // the same for the opening and the closing tag
    content = all.subspan(tagSize, all.size() - 2 * tagSize);
    return true;
}

bool Reader::Null(int tag) {
    std::uint32_t length = 0;
    return Primitive(tag, TAG_NULL, length) && Exactly(length, 0);
}

bool Reader::Boolean(bool& value, int tag) {
    const std::uint8_t* start = m_at;
    Tag found;
    if (!ReadTag(found))
        return false;
    if (tag < 0) {
        if (found.Kind != TagKind::application || found.Number != TAG_BOOLEAN)
            return Refuse(start);
        value = found.Value;
        return true;
    }
    if (found.Kind != TagKind::context || found.Number != static_cast<unsigned>(tag))
        return Refuse(start);
    if (!Exactly(found.Length, 1))
        return false;
    value = *m_at++ != 0;
    return true;
}

bool Reader::Unsigned64(std::uint64_t& value, int tag) {
    std::uint32_t length = 0;
    if (!Primitive(tag, TAG_UNSIGNED, length))
        return false;
    if (length < 1 || length > 8)
        return Fail(DecodeError::badLength);
    std::uint64_t number = 0;
    for (std::uint32_t i = 0; i < length; ++i)
        number = number << 8 | *m_at++;
    value = number;
    return true;
}

bool Reader::UnsignedContents(std::uint32_t length, std::uint32_t& value) {
    if (length < 1 || length > 8)
        return Fail(DecodeError::badLength);
    if (!Need(length))
        return false;
    std::uint64_t number = 0;
    for (std::uint32_t i = 0; i < length; ++i)
        number = number << 8 | *m_at++;
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    value = static_cast<std::uint32_t>(number < most ? number : most);
    return true;
}

bool Reader::SignedContents(std::uint32_t length, std::int32_t& value) {
    if (length < 1 || length > 8)
        return Fail(DecodeError::badLength);
    if (!Need(length))
        return false;
    std::uint64_t bits = (*m_at & 0x80U) != 0 ? ~std::uint64_t{0} : 0;
    for (std::uint32_t i = 0; i < length; ++i)
        bits = bits << 8 | *m_at++;
    const auto number = static_cast<std::int64_t>(bits);
    constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    value = static_cast<std::int32_t>(number < least ? least : number > most ? most : number);
    return true;
}

bool Reader::RealContents(std::uint32_t length, float& value) {
    if (!Exactly(length, 4))
        return false;
    value = RealOf(m_at);
    m_at += 4;
    return true;
}

bool Reader::DoubleContents(std::uint32_t length, double& value) {
    if (!Exactly(length, 8))
        return false;
    value = DoubleOf(m_at);
    m_at += 8;
    return true;
}

bool Reader::BitStringContents(std::uint32_t length, BACSTAC_BIT_STRING& value) {
    if (length < 1)
        return Fail(DecodeError::badLength);
    if (!Need(length))
        return false;
    if (m_at[0] > 7 || (length == 1 && m_at[0] != 0))
        return Fail(DecodeError::badLength);
    value = BitStringOf({m_at, length});
    m_at += length;
    return true;
}

bool Reader::DateContents(std::uint32_t length, BACSTAC_DATE& value) {
    if (!Exactly(length, 4))
        return false;
    value = DateOf(m_at);
    m_at += 4;
    return true;
}

bool Reader::TimeContents(std::uint32_t length, BACSTAC_TIME& value) {
    if (!Exactly(length, 4))
        return false;
    value = TimeOf(m_at);
    m_at += 4;
    return true;
}

bool Reader::ObjectIdContents(std::uint32_t length, BACSTAC_OBJECT_ID& value) {
    if (!Exactly(length, 4))
        return false;
    value = ObjectIdOf(m_at);
    m_at += 4;
    return true;
}

bool Reader::Unsigned(std::uint32_t& value, int tag) {
    std::uint32_t length = 0;
    return Primitive(tag, TAG_UNSIGNED, length) && UnsignedContents(length, value);
}

bool Reader::Enumerated(std::uint32_t& value, int tag) {
    std::uint32_t length = 0;
    return Primitive(tag, TAG_ENUMERATED, length) && UnsignedContents(length, value);
}

bool Reader::Signed(std::int32_t& value, int tag) {
    std::uint32_t length = 0;
    return Primitive(tag, TAG_SIGNED, length) && SignedContents(length, value);
}

bool Reader::Double(double& value, int tag) {
    std::uint32_t length = 0;
    return Primitive(tag, TAG_DOUBLE, length) && DoubleContents(length, value);
}

bool Reader::OctetString(std::span<const std::uint8_t>& value, int tag) {
    std::uint32_t length = 0;
    return Primitive(tag, TAG_OCTET_STRING, length) && Octets(length, value);
}

bool Reader::CharacterString(std::span<const std::uint8_t>& value, int tag) {
    std::uint32_t length = 0;
    if (!Primitive(tag, TAG_CHARACTER_STRING, length))
        return false;
    return length == 0 ? Fail(DecodeError::badLength) : Octets(length, value);
}

bool Reader::BitString(BACSTAC_BIT_STRING& value, int tag) {
    std::uint32_t length = 0;
    return Primitive(tag, TAG_BIT_STRING, length) && BitStringContents(length, value);
}

} // namespace bacnet
