// The value of a property of a simulated object. It is kept as it goes on the wire (clause 20.2), so that a read is a
// copy; array and list elements can be told apart. Immutable in use: a property is changed by giving it another value.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

enum class Shape : std::uint8_t { single, array, list };

class Value {
public:
    Value() = default; // a list without elements

    static Value Null();
    static Value Boolean(bool value);
    static Value Unsigned(std::uint32_t value);
    static Value Signed(std::int32_t value);
    static Value Real(float value);
    static Value Double(double value);
    static Value OctetString(std::span<const std::uint8_t> value);
    static Value String(std::string_view utf8);
    static Value BitString(unsigned count, std::initializer_list<unsigned> set); // set: numbers of the bits that are 1
    static Value BitString(const BACSTAC_BIT_STRING& value);
    static Value Enumerated(std::uint32_t value);
    static Value Date(const BACSTAC_DATE& value);
    static Value Time(const BACSTAC_TIME& value);
    static Value ObjectId(const BACSTAC_OBJECT_ID& value);
    static Value DateTime(const BACSTAC_DATE_TIME& value);
    static Value Reference(const BACSTAC_DEV_OBJ_PROP_REF& value); // BACnetDeviceObjectPropertyReference

    static Value TimeStamp(const BACSTAC_DATE_TIME& value); // BACnetTimeStamp, of a date and time

    // One element of any type, given in its encoding with all its tags.
    static Value Encoded(std::span<const std::uint8_t> wire);

    static Value Array(std::span<const Value> elements);
    static Value List(std::span<const Value> elements);

    // An array or a list of these elements; a single value of the first.
    static Value Of(Shape shape, std::span<const std::span<const std::uint8_t>> elements);

    Shape GetShape() const { return m_shape; }
    std::uint32_t Count() const { return m_shape == Shape::single ? 1 : static_cast<std::uint32_t>(m_ends.size()); }
    std::span<const std::uint8_t> Wire() const { return Octets(0, m_wire.size()); }
    std::span<const std::uint8_t> Element(std::uint32_t index) const; // from 0, below Count
    // An array or list with that many elements. New ones equal the last, or fill where there is none.
    Value Resized(std::uint32_t count, const Value& fill) const;
    Value WithElement(std::uint32_t index, std::span<const std::uint8_t> wire) const; // index from 0, below Count

    friend bool operator==(const Value&, const Value&) = default;

private:
    template <typename Write>
    static Value Primitive(Write write);
    static Value Collect(Shape shape, std::span<const Value> elements);
    std::span<const std::uint8_t> Octets(std::size_t begin, std::size_t end) const {
        return {reinterpret_cast<const std::uint8_t*>(m_wire.data()) + begin, end - begin};
    }

    std::string m_wire;                // short values need no memory of their own
    std::vector<std::uint32_t> m_ends; // of the elements, in m_wire; empty for a single value
    Shape m_shape = Shape::list;
};

} // namespace sim
