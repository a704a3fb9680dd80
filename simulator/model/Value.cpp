#include "simulator/model/Value.h"

#include "platform/stack/codec/Writer.h"

#include <array>

namespace sim {

namespace {

std::string ToWire(std::span<const std::uint8_t> octets) {
    return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

} // namespace

// write(bacnet::Writer&) is called again with more room when the value is long.
template <typename Write>
Value Value::Primitive(Write write) {
    Value value;
    value.m_shape = Shape::single;
    std::array<std::uint8_t, 64> near{};
    bacnet::Writer writer(near);
    write(writer);
    if (!writer.Overflow()) {
        value.m_wire = ToWire(writer.Written());
        return value;
    }
    std::vector<std::uint8_t> far(writer.Size());
    bacnet::Writer again(far);
    write(again);
    value.m_wire = ToWire(again.Written());
    return value;
}

Value Value::Null() {
    return Primitive([](bacnet::Writer& to) { to.Null(); });
}

Value Value::Boolean(bool value) {
    return Primitive([=](bacnet::Writer& to) { to.Boolean(value); });
}

Value Value::Unsigned(std::uint32_t value) {
    return Primitive([=](bacnet::Writer& to) { to.Unsigned(value); });
}

Value Value::Signed(std::int32_t value) {
    return Primitive([=](bacnet::Writer& to) { to.Signed(value); });
}

Value Value::Real(float value) {
    return Primitive([=](bacnet::Writer& to) { to.Real(value); });
}

Value Value::Double(double value) {
    return Primitive([=](bacnet::Writer& to) { to.Double(value); });
}

Value Value::OctetString(std::span<const std::uint8_t> value) {
    return Primitive([=](bacnet::Writer& to) { to.OctetString(value); });
}

Value Value::String(std::string_view utf8) {
    return Primitive([=](bacnet::Writer& to) { to.CharacterString(utf8); });
}

Value Value::BitString(unsigned count, std::initializer_list<unsigned> set) {
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = count;
    for (const unsigned bit : set)
        bits.Bits[bit / 8] = static_cast<std::uint8_t>(bits.Bits[bit / 8] | 1U << bit % 8);
    return BitString(bits);
}

Value Value::BitString(const BACSTAC_BIT_STRING& value) {
    return Primitive([&](bacnet::Writer& to) { to.BitString(value); });
}

Value Value::Enumerated(std::uint32_t value) {
    return Primitive([=](bacnet::Writer& to) { to.Enumerated(value); });
}

Value Value::Date(const BACSTAC_DATE& value) {
    return Primitive([&](bacnet::Writer& to) { to.Date(value); });
}

Value Value::Time(const BACSTAC_TIME& value) {
    return Primitive([&](bacnet::Writer& to) { to.Time(value); });
}

Value Value::ObjectId(const BACSTAC_OBJECT_ID& value) {
    return Primitive([&](bacnet::Writer& to) { to.ObjectId(value); });
}

Value Value::DateTime(const BACSTAC_DATE_TIME& value) {
    return Primitive([&](bacnet::Writer& to) {
        to.Date(value.Date);
        to.Time(value.Time);
    });
}

Value Value::TimeStamp(const BACSTAC_DATE_TIME& value) {
    return Primitive([&](bacnet::Writer& to) {
        to.Opening(2);
        to.Date(value.Date);
        to.Time(value.Time);
        to.Closing(2);
    });
}

Value Value::Reference(const BACSTAC_DEV_OBJ_PROP_REF& value) {
    return Primitive([&](bacnet::Writer& to) {
        to.ObjectId(value.ObjectId, 0);
        to.Enumerated(value.Property, 1);
        if (value.ArrayIndex != static_cast<std::uint32_t>(BACSTAC_NO_INDEX))
            to.Unsigned(value.ArrayIndex, 2);
        if (value.DevicePresent != 0)
            to.ObjectId(value.DeviceId, 3);
    });
}

Value Value::Encoded(std::span<const std::uint8_t> wire) {
    Value value;
    value.m_shape = Shape::single;
    value.m_wire = ToWire(wire);
    return value;
}

Value Value::Collect(Shape shape, std::span<const Value> elements) {
    Value value;
    value.m_shape = shape;
    value.m_ends.reserve(elements.size());
    for (const Value& element : elements) {
        value.m_wire += element.m_wire;
        value.m_ends.push_back(static_cast<std::uint32_t>(value.m_wire.size()));
    }
    return value;
}

Value Value::Array(std::span<const Value> elements) {
    return Collect(Shape::array, elements);
}

Value Value::List(std::span<const Value> elements) {
    return Collect(Shape::list, elements);
}

Value Value::Of(Shape shape, std::span<const std::span<const std::uint8_t>> elements) {
    if (shape == Shape::single)
        return elements.empty() ? Value() : Encoded(elements.front());
    Value value;
    value.m_shape = shape;
    value.m_ends.reserve(elements.size());
    for (const std::span<const std::uint8_t> element : elements) {
        value.m_wire += ToWire(element);
        value.m_ends.push_back(static_cast<std::uint32_t>(value.m_wire.size()));
    }
    return value;
}

Value Value::Resized(std::uint32_t count, const Value& fill) const {
    std::vector<std::span<const std::uint8_t>> elements;
    const std::span<const std::uint8_t> added = Count() == 0 ? fill.Wire() : Element(Count() - 1);
    for (std::uint32_t i = 0; i < count; ++i)
        elements.push_back(i < Count() ? Element(i) : added);
    return Of(m_shape, elements);
}

Value Value::WithElement(std::uint32_t index, std::span<const std::uint8_t> wire) const {
    std::vector<std::span<const std::uint8_t>> elements;
    for (std::uint32_t i = 0; i < Count(); ++i)
        elements.push_back(i == index ? wire : Element(i));
    return Of(m_shape, elements);
}

std::span<const std::uint8_t> Value::Element(std::uint32_t index) const {
    if (m_shape == Shape::single)
        return Wire();
    return Octets(index == 0 ? 0 : m_ends[index - 1], m_ends[index]);
}

} // namespace sim
