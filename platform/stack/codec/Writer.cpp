#include "platform/stack/codec/Writer.h"

#include "platform/stack/codec/Octets.h"

#include <bit>
#include <cstring>

namespace bacnet {
namespace {

unsigned OctetsFor(std::uint64_t value) {
    unsigned octets = 1;
    while (octets < 8 && value >> 8 * octets != 0)
        ++octets;
    return octets;
}

} // namespace

std::uint8_t* Writer::Take(std::size_t count) {
    if (m_overflow || count > m_buffer.size() - m_size) {
        m_overflow = true;
        m_size += count;
        return nullptr;
    }
    std::uint8_t* at = m_buffer.data() + m_size;
    m_size += count;
    return at;
}

void Writer::Rewind(std::size_t size) {
    if (size > m_size)
        return;
    m_size = size;
    if (size <= m_buffer.size())
        m_overflow = false;
}

void Writer::U8(std::uint8_t value) {
    if (std::uint8_t* at = Take(1))
        *at = value;
}

void Writer::U16(std::uint16_t value) {
    if (std::uint8_t* at = Take(2)) {
        at[0] = static_cast<std::uint8_t>(value >> 8);
        at[1] = static_cast<std::uint8_t>(value);
    }
}

void Writer::U32(std::uint32_t value) {
    if (std::uint8_t* at = Take(4)) {
        for (int i = 0; i < 4; ++i)
            at[i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
}

void Writer::Octets(std::span<const std::uint8_t> octets) {
    std::uint8_t* at = Take(octets.size());
    if (at != nullptr && !octets.empty())
        std::memcpy(at, octets.data(), octets.size());
}

void Writer::PatchU8(std::size_t offset, std::uint8_t value) {
    if (!m_overflow && offset < m_size)
        m_buffer[offset] = value;
}

void Writer::PatchU16(std::size_t offset, std::uint16_t value) {
    PatchU8(offset, static_cast<std::uint8_t>(value >> 8));
    PatchU8(offset + 1, static_cast<std::uint8_t>(value));
}

void Writer::Tag(unsigned number, bool context, std::uint32_t length) {
    std::uint8_t header[7];
    std::size_t size = 1;
    const unsigned classBit = context ? 8 : 0;
    const unsigned lengthBits = length < 5 ? length : 5;
    if (number < 15) {
        header[0] = static_cast<std::uint8_t>(number << 4 | classBit | lengthBits);
    } else {
        header[0] = static_cast<std::uint8_t>(0xF0 | classBit | lengthBits);
        header[size++] = static_cast<std::uint8_t>(number);
    }
    if (length >= 5) {
        if (length < 254) {
            header[size++] = static_cast<std::uint8_t>(length);
        } else if (length < 65536) {
            header[size++] = 254;
            header[size++] = static_cast<std::uint8_t>(length >> 8);
            header[size++] = static_cast<std::uint8_t>(length);
        } else {
            header[size++] = 255;
            for (int i = 0; i < 4; ++i)
                header[size++] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
        }
    }
    Octets({header, size});
}

void Writer::Bracket(unsigned number, unsigned lengthBits) {
    if (number < 15) {
        U8(static_cast<std::uint8_t>(number << 4 | 8 | lengthBits));
    } else {
        U8(static_cast<std::uint8_t>(0xF8 | lengthBits));
        U8(static_cast<std::uint8_t>(number));
    }
}

void Writer::Header(int tag, unsigned type, std::uint32_t length) {
    if (tag < 0)
        Tag(type, false, length);
    else
        Tag(static_cast<unsigned>(tag), true, length);
}

void Writer::Number(int tag, unsigned type, std::uint64_t value, unsigned octets) {
    Header(tag, type, octets);
    std::uint8_t* at = Take(octets);
    for (unsigned i = 0; at != nullptr && i < octets; ++i)
        at[i] = static_cast<std::uint8_t>(value >> 8 * (octets - 1 - i));
}

void Writer::Null(int tag) {
    Header(tag, TAG_NULL, 0);
}

void Writer::Boolean(bool value, int tag) {
    if (tag < 0) {
        U8(value ? 0x11 : 0x10);
    } else {
        Header(tag, TAG_BOOLEAN, 1);
        U8(value ? 1 : 0);
    }
}

void Writer::Unsigned(std::uint64_t value, int tag) {
    Number(tag, TAG_UNSIGNED, value, OctetsFor(value));
}

void Writer::Signed(std::int64_t value, int tag) {
    unsigned octets = 1;
    while (octets < 8 && (value >> (8 * octets - 1)) != 0 && (value >> (8 * octets - 1)) != -1)
        ++octets;
    Number(tag, TAG_SIGNED, static_cast<std::uint64_t>(value), octets);
}

void Writer::Enumerated(std::uint32_t value, int tag) {
    Number(tag, TAG_ENUMERATED, value, OctetsFor(value));
}

void Writer::Real(float value, int tag) {
    Number(tag, TAG_REAL, std::bit_cast<std::uint32_t>(value), 4);
}

void Writer::Double(double value, int tag) {
    Number(tag, TAG_DOUBLE, std::bit_cast<std::uint64_t>(value), 8);
}

void Writer::OctetString(std::span<const std::uint8_t> value, int tag) {
    Header(tag, TAG_OCTET_STRING, static_cast<std::uint32_t>(value.size()));
    Octets(value);
}

void Writer::CharacterString(std::string_view utf8, int tag) {
    Header(tag, TAG_CHARACTER_STRING, static_cast<std::uint32_t>(utf8.size() + 1));
    U8(0);
    Octets({reinterpret_cast<const std::uint8_t*>(utf8.data()), utf8.size()});
}

void Writer::BitString(const BACSTAC_BIT_STRING& value, int tag) {
    const std::uint32_t bits = value.BitCount < MAX_BITS ? value.BitCount : MAX_BITS;
    const std::uint32_t octets = (bits + 7) / 8;
    Header(tag, TAG_BIT_STRING, octets + 1);
    U8(static_cast<std::uint8_t>(8 * octets - bits));
    for (std::uint32_t i = 0; i < octets; ++i) {
        const bool last = i + 1 == octets && bits % 8 != 0;
        const unsigned mask = last ? (1U << bits % 8) - 1 : 0xFFU;
        U8(ReverseBits(static_cast<std::uint8_t>(value.Bits[i] & mask)));
    }
}

void Writer::Date(const BACSTAC_DATE& value, int tag) {
    Header(tag, TAG_DATE, 4);
    if (std::uint8_t* at = Take(4))
        DateToOctets(value, at);
}

void Writer::Time(const BACSTAC_TIME& value, int tag) {
    Header(tag, TAG_TIME, 4);
    const std::uint8_t octets[] = {value.Hour, value.Minute, value.Second, value.Hundredths};
    Octets(octets);
}

void Writer::ObjectId(const BACSTAC_OBJECT_ID& value, int tag) {
    Number(tag, TAG_OBJECT_ID, (value.Type & 0x3FFU) << 22 | (value.Instance & BACSTAC_MAX_INSTANCE), 4);
}

} // namespace bacnet
