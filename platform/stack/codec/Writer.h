// Writes BACnet's tagged encoding (ANSI/ASHRAE 135 clause 20.2) into a caller's buffer. Used by every encoder of the
// stack, on any thread; one writer is one thread's.
//
// Nothing is written beyond the buffer: what does not fit sets Overflow, and from then on nothing is written at all,
// so that the buffer holds whole items only up to there. Size goes on counting, and tells what would have been needed.
//
// Typed writes take the tag to write: APPLICATION (the type's own), or a context tag number.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/codec/Tag.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace bacnet {

class Writer {
public:
    explicit Writer(std::span<std::uint8_t> buffer) : m_buffer(buffer) {}

    bool Overflow() const { return m_overflow; }
    std::size_t Size() const { return m_size; } // octets written, or that would have been
    std::size_t Room() const { return m_overflow ? 0 : m_buffer.size() - m_size; }
    std::span<const std::uint8_t> Written() const { return m_buffer.first(m_overflow ? 0 : m_size); }
    // Takes back everything from size on, and with it an overflow that came later.
    void Rewind(std::size_t size);

    // ---- untagged octets; numbers are big-endian

    void U8(std::uint8_t value);
    void U16(std::uint16_t value);
    void U32(std::uint32_t value);
    void Octets(std::span<const std::uint8_t> octets);
    // Overwrites octets that were written before, such as a length that is known only at the end.
    void PatchU8(std::size_t offset, std::uint8_t value);
    void PatchU16(std::size_t offset, std::uint16_t value);

    // ---- tags

    // Header of a primitive with length octets of contents, which the caller writes next.
    void Tag(unsigned number, bool context, std::uint32_t length);
    void Opening(unsigned number) { Bracket(number, 6); }
    void Closing(unsigned number) { Bracket(number, 7); }

    // ---- primitives (clauses 20.2.2 to 20.2.14)

    void Null(int tag = APPLICATION);
    void Boolean(bool value, int tag = APPLICATION);
    void Unsigned(std::uint64_t value, int tag = APPLICATION); // in the fewest octets, as are the next two
    void Signed(std::int64_t value, int tag = APPLICATION);
    void Enumerated(std::uint32_t value, int tag = APPLICATION);
    void Real(float value, int tag = APPLICATION);
    void Double(double value, int tag = APPLICATION);
    void OctetString(std::span<const std::uint8_t> value, int tag = APPLICATION);
    void CharacterString(std::string_view utf8, int tag = APPLICATION); // in character set 0, UTF-8
    void BitString(const BACSTAC_BIT_STRING& value, int tag = APPLICATION);
    void Date(const BACSTAC_DATE& value, int tag = APPLICATION);
    void Time(const BACSTAC_TIME& value, int tag = APPLICATION);
    void ObjectId(const BACSTAC_OBJECT_ID& value, int tag = APPLICATION);

private:
    void Bracket(unsigned number, unsigned lengthBits);
    void Header(int tag, unsigned type, std::uint32_t length);
    void Number(int tag, unsigned type, std::uint64_t value, unsigned octets);
    std::uint8_t* Take(std::size_t count); // null when they do not fit

    std::span<std::uint8_t> m_buffer;
    std::size_t m_size = 0;
    bool m_overflow = false;
};

} // namespace bacnet
