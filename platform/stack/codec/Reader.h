// Reads BACnet's tagged encoding (ANSI/ASHRAE 135 clause 20.2) from octets of unknown origin. Used by every decoder of
// the stack, on any thread; one reader is one thread's.
//
// The reader never reads beyond its octets, never allocates and never throws. A read that fails returns false, leaves
// its result alone, and leaves the reader failed for good: Error and ErrorOffset tell what and where, all later reads
// return false. So a decoder may read a whole structure and test once. The Is... tests never fail the reader.
//
// Typed reads take the tag that they expect: APPLICATION (the type's own), or a context tag number.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/codec/Octets.h"
#include "platform/stack/codec/Tag.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace bacnet {

class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> octets)
        : m_begin(octets.data()), m_at(octets.data()), m_end(octets.data() + octets.size()) {}

    bool Ok() const { return m_error == DecodeError::none; }
    DecodeError Error() const { return m_error; }
    std::size_t ErrorOffset() const { return m_errorOffset; } // of the tag or octet that is wrong
    std::size_t Offset() const { return static_cast<std::size_t>(m_at - m_begin); }
    std::span<const std::uint8_t> Since(std::size_t offset) const { return {m_begin + offset, m_at}; }
    std::size_t Remaining() const { return static_cast<std::size_t>(m_end - m_at); }
    bool AtEnd() const { return m_at == m_end; }
    std::span<const std::uint8_t> Rest() const { return {m_at, Remaining()}; }
    // Fails the reader at the present octet, for what only the caller can see to be wrong. Always false.
    bool Fail(DecodeError error) { return FailAt(m_at, error); }

    // ---- untagged octets, as PDU headers have them; numbers are big-endian

    bool U8(std::uint8_t& value) {
        if (!Need(1))
            return false;
        value = *m_at++;
        return true;
    }
    bool U16(std::uint16_t& value) {
        if (!Need(2))
            return false;
        value = static_cast<std::uint16_t>(m_at[0] << 8 | m_at[1]);
        m_at += 2;
        return true;
    }
    bool U32(std::uint32_t& value) {
        if (!Need(4))
            return false;
        value = Big32(m_at);
        m_at += 4;
        return true;
    }
    bool Octets(std::size_t count, std::span<const std::uint8_t>& octets) {
        if (!Need(count))
            return false;
        octets = {m_at, count};
        m_at += count;
        return true;
    }

    // ---- tags

    // The next tag without consuming it; false at the end and where there is no tag, without failing the reader.
    bool PeekTag(Tag& tag) const {
        const std::uint8_t* after = nullptr;
        return Ok() && ParseTag(tag, after) == DecodeError::none;
    }
    // Consumes a tag. The Length octets of its contents are known to be there.
    bool ReadTag(Tag& tag) {
        if (!Ok())
            return false;
        const std::uint8_t* after = nullptr;
        const DecodeError error = ParseTag(tag, after);
        if (error != DecodeError::none)
            return Fail(error);
        m_at = after;
        return true;
    }
    bool IsApplication(unsigned type) const { return IsTag(TagKind::application, type); }
    bool IsContext(unsigned number) const { return IsTag(TagKind::context, number); }
    bool IsOpening(unsigned number) const {
        return number < 15 ? IsOctet(number, 0xE) : IsTag(TagKind::opening, number);
    }
    bool IsClosing(unsigned number) const {
        return number < 15 ? IsOctet(number, 0xF) : IsTag(TagKind::closing, number);
    }

    bool Open(unsigned number) { return Expect(TagKind::opening, number); }
    bool Close(unsigned number) { return Expect(TagKind::closing, number); }

    // Passes over one primitive, or over an opening tag, all it encloses and its closing tag. octets, if wanted, are
    // all of it with its tags.
    bool Skip(std::span<const std::uint8_t>* octets = nullptr);
    // Reads opening tag number, what it encloses, and the closing tag; content is what stands between them.
    bool Enclosed(unsigned number, std::span<const std::uint8_t>& content);

    // ---- primitives (clauses 20.2.2 to 20.2.14)

    bool Null(int tag = APPLICATION);
    bool Boolean(bool& value, int tag = APPLICATION);
    // 1 to 8 octets. The 32-bit forms give 0xFFFFFFFF for anything greater.
    bool Unsigned(std::uint32_t& value, int tag = APPLICATION);
    bool Unsigned64(std::uint64_t& value, int tag = APPLICATION);
    bool Enumerated(std::uint32_t& value, int tag = APPLICATION);
    // 1 to 8 octets, held to the range of 32 bits.
    bool Signed(std::int32_t& value, int tag = APPLICATION);
    bool Real(float& value, int tag = APPLICATION) {
        const std::uint8_t* at = nullptr;
        if (!FourOctets(tag, TAG_REAL, at))
            return false;
        value = RealOf(at);
        return true;
    }
    bool Double(double& value, int tag = APPLICATION);
    bool OctetString(std::span<const std::uint8_t>& value, int tag = APPLICATION);
    // With the character set octet in front; DecodeText makes text of it. Never empty.
    bool CharacterString(std::span<const std::uint8_t>& value, int tag = APPLICATION);
    // Bits beyond the 96 that the record holds are dropped.
    bool BitString(BACSTAC_BIT_STRING& value, int tag = APPLICATION);
    bool Date(BACSTAC_DATE& value, int tag = APPLICATION) {
        const std::uint8_t* at = nullptr;
        if (!FourOctets(tag, TAG_DATE, at))
            return false;
        value = DateOf(at);
        return true;
    }
    bool Time(BACSTAC_TIME& value, int tag = APPLICATION) {
        const std::uint8_t* at = nullptr;
        if (!FourOctets(tag, TAG_TIME, at))
            return false;
        value = TimeOf(at);
        return true;
    }
    bool ObjectId(BACSTAC_OBJECT_ID& value, int tag = APPLICATION) {
        const std::uint8_t* at = nullptr;
        if (!FourOctets(tag, TAG_OBJECT_ID, at))
            return false;
        value = ObjectIdOf(at);
        return true;
    }

    // Contents of a primitive whose tag was read by ReadTag, by its length; for values whose type is known otherwise.
    bool UnsignedContents(std::uint32_t length, std::uint32_t& value);
    bool SignedContents(std::uint32_t length, std::int32_t& value);
    bool RealContents(std::uint32_t length, float& value);
    bool DoubleContents(std::uint32_t length, double& value);
    bool BitStringContents(std::uint32_t length, BACSTAC_BIT_STRING& value);
    bool DateContents(std::uint32_t length, BACSTAC_DATE& value);
    bool TimeContents(std::uint32_t length, BACSTAC_TIME& value);
    bool ObjectIdContents(std::uint32_t length, BACSTAC_OBJECT_ID& value);

    static std::uint32_t Big32(const std::uint8_t* octets) {
        return std::uint32_t{octets[0]} << 24 | std::uint32_t{octets[1]} << 16 | std::uint32_t{octets[2]} << 8 |
               octets[3];
    }

private:
    bool FailAt(const std::uint8_t* where, DecodeError error) {
        if (m_error == DecodeError::none) {
            m_error = error;
            m_errorOffset = static_cast<std::size_t>(where - m_begin);
        }
        return false;
    }
    bool Need(std::size_t count) {
        if (!Ok())
            return false;
        return count <= Remaining() || Fail(DecodeError::truncated);
    }
    DecodeError ParseTag(Tag& tag, const std::uint8_t*& after) const;
    bool IsTag(TagKind kind, unsigned number) const {
        Tag tag;
        return PeekTag(tag) && tag.Kind == kind && tag.Number == number;
    }
    // Most tags have one form of one octet; lengthBits is the low half of it without the class bit.
    bool IsOctet(unsigned number, unsigned lengthBits) const {
        return number < 15 && Ok() && m_at != m_end && *m_at == (number << 4 | lengthBits);
    }
    bool Expect(TagKind kind, unsigned number) {
        if (IsOctet(number, kind == TagKind::opening ? 0xEU : 0xFU)) {
            ++m_at;
            return true;
        }
        const std::uint8_t* start = m_at;
        Tag tag;
        if (!ReadTag(tag))
            return false;
        return (tag.Kind == kind && tag.Number == number) || Refuse(start);
    }
    // The tag of a primitive: of this type when tag is APPLICATION, else context tag number tag.
    bool Primitive(int tag, unsigned type, std::uint32_t& length) {
        const std::uint8_t* start = m_at;
        Tag found;
        if (!ReadTag(found))
            return false;
        const bool matches = tag < 0 ? found.Kind == TagKind::application && found.Number == type
                                     : found.Kind == TagKind::context && found.Number == static_cast<unsigned>(tag);
        length = found.Length;
        return matches || Refuse(start);
    }
    bool Refuse(const std::uint8_t* start) {
        m_at = start;
        return Fail(DecodeError::unexpected);
    }
    // The tag of a primitive of four octets, and that they are there; at is where they start.
    bool FourOctets(int tag, unsigned type, const std::uint8_t*& at) {
        if (Remaining() >= 5 && (tag < 0 ? IsOctet(type, 4) : IsOctet(static_cast<unsigned>(tag), 0xC))) {
            at = m_at + 1;
            m_at += 5;
            return true;
        }
        std::uint32_t length = 0;
        if (!Primitive(tag, type, length) || !Exactly(length, 4))
            return false;
        at = m_at;
        m_at += 4;
        return true;
    }
    // True when the contents are this long and can be read.
    bool Exactly(std::uint32_t length, std::uint32_t wanted) {
        return (Ok() && length == wanted) ? Need(wanted) : Fail(DecodeError::badLength);
    }

    const std::uint8_t* m_begin;
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
    std::size_t m_errorOffset = 0;
    DecodeError m_error = DecodeError::none;
};

// Application booleans carry their value in the length field: Length is 0 then and Value holds it.
inline DecodeError Reader::ParseTag(Tag& tag, const std::uint8_t*& after) const {
    const std::uint8_t* at = m_at;
    if (at == m_end)
        return DecodeError::truncated;
    const std::uint8_t first = *at++;
    const unsigned lengthBits = first & 7U;
    const bool context = (first & 8U) != 0;
    tag.Number = static_cast<std::uint8_t>(first >> 4);
    if (tag.Number == 15) {
        if (at == m_end)
            return DecodeError::truncated;
        tag.Number = *at++;
        if (tag.Number < 15 || tag.Number == 255) // 255 is reserved, small numbers have one form only
            return DecodeError::badTag;
    }
    tag.Kind = context ? TagKind::context : TagKind::application;
    tag.Length = lengthBits;
    tag.Value = false;
    if (lengthBits > 5) {
        if (!context)
            return DecodeError::badTag;
        tag.Kind = lengthBits == 6 ? TagKind::opening : TagKind::closing;
        tag.Length = 0;
    } else if (!context && tag.Number == TAG_BOOLEAN) {
        if (lengthBits > 1)
            return DecodeError::badLength;
        tag.Value = lengthBits == 1;
        tag.Length = 0;
    } else if (lengthBits == 5) {
        const auto left = m_end - at;
        if (left < 1)
            return DecodeError::truncated;
        tag.Length = *at++;
        if (tag.Length == 254) {
            if (left < 3)
                return DecodeError::truncated;
            tag.Length = std::uint32_t{at[0]} << 8 | at[1];
            at += 2;
        } else if (tag.Length == 255) {
            if (left < 5)
                return DecodeError::truncated;
            tag.Length = Big32(at);
            at += 4;
        }
    }
    if (tag.Length > static_cast<std::size_t>(m_end - at))
        return DecodeError::truncated;
    after = at;
    return DecodeError::none;
}

} // namespace bacnet
