// Values of the rows of the type table, made from the table itself and a seed: equal seeds give equal octets. What is
// written can be told tag by tag, for comparison with another decoder.
#pragma once

#include "platform/stack/codec/Writer.h"
#include "platform/stack/schema/TypeTable.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <variant>
#include <vector>

namespace testing_support {

// One tag of the encoding (ANSI/ASHRAE 135 clause 20.2.1), with the value that a primitive was given.
struct WrittenTag {
    enum class Kind : std::uint8_t { primitive, opening, closing };
    using PrimitiveValue =
        std::variant<std::monostate, bool, std::uint32_t, std::int32_t, float, double, std::string,
                     std::vector<std::uint8_t>, BACSTAC_BIT_STRING, BACSTAC_DATE, BACSTAC_TIME, BACSTAC_OBJECT_ID>;

    Kind What = Kind::primitive;
    bool Context = false;
    unsigned Number = 0;      // application type, or context number
    std::uint32_t Length = 0; // octets behind the tag; of an application boolean its value
    std::size_t Offset = 0;   // of the tag's first octet
    BACSTAC_DATA_TYPE Type = TYPE_NONE;
    PrimitiveValue Value; // of the application type's C++ type; monostate: null
};

class ValueGenerator {
public:
    // tags, when given, gets what is written, in its order.
    ValueGenerator(bacnet::Writer& out, unsigned seed, std::vector<WrittenTag>* tags = nullptr)
        : m_out(out), m_random(seed), m_tags(tags) {}

    // One element of the type, in tag when it is not bacnet::APPLICATION.
    void Element(const bacnet::TypeInfo& type, int tag = bacnet::APPLICATION);

private:
    std::uint32_t Pick(std::uint32_t count) { return static_cast<std::uint32_t>(m_random()) % count; }
    std::uint32_t Number() { return static_cast<std::uint32_t>(m_random()) >> Pick(32); } // small, large and in between
    BACSTAC_DATA_TYPE PrimitiveType();
    void Body(const bacnet::TypeInfo& type);
    void Write(const bacnet::Member& member);
    void Primitive(BACSTAC_DATA_TYPE type, int tag);
    void Note(BACSTAC_DATA_TYPE type, int tag, std::size_t offset, WrittenTag::PrimitiveValue value);
    WrittenTag::PrimitiveValue Put(BACSTAC_DATA_TYPE type, int tag);
    void Opening(unsigned number);
    void Closing(unsigned number);

    bacnet::Writer& m_out;
    std::mt19937 m_random;
    std::vector<WrittenTag>* m_tags;
};

} // namespace testing_support
