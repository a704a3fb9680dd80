// The JSON-like form of typed values: every type, from seeds, there and back to the same bytes.
#include "api/bacnet/Jason.h"
#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/value/ValueFactory.h"
#include "tests/support/GeneratedValue.h"
#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>
#include <memory>
#include <set>
#include <sstream>

using namespace bacnet;
using jason::value_t;

namespace {

using Value = std::unique_ptr<CPropertyValue>;

// Compact JSON, for comparing.
void Print(std::ostream& out, const value_t& value) {
    if (value.is_null())
        out << "null";
    else if (const auto* boolean = value.get<bool>())
        out << (*boolean ? "true" : "false");
    else if (const auto* integer = value.get<std::int64_t>())
        out << *integer;
    else if (const auto* real = value.get<double>())
        out << *real;
    else if (const auto* text = value.get<std::string>())
        out << '"' << *text << '"';
    else if (const auto* array = value.get<value_t::array_t>()) {
        const char* separator = "[";
        out << (array->empty() ? separator : "");
        for (const value_t& each : *array) {
            out << separator;
            Print(out, each);
            separator = ",";
        }
        out << ']';
    } else if (const auto* members = value.get<value_t::object_t>()) {
        const char* separator = "{";
        out << (members->empty() ? separator : "");
        for (const jason::member_t& member : *members) {
            out << separator << '"' << member.name << "\":";
            Print(out, member.value);
            separator = ",";
        }
        out << '}';
    }
}

std::string Text(const value_t& value) {
    std::ostringstream out;
    Print(out, value);
    return out.str();
}

std::string Encoded(const CPropertyValue& value) {
    value_t json;
    return value.Encode(json) ? Text(json) : "none";
}

// All bytes that the value writes, and what they are.
std::string Bytes(const CPropertyValue& value) {
    CPropertyContents contents(value.GetDataSize());
    if (contents.BufferSize != 0)
        std::memset(contents.Buffer, 0, contents.BufferSize);
    if (!value.WriteTo(contents))
        return "none";
    return std::to_string(contents.DataType) + "/" + std::to_string(contents.ElementCount) + ":" +
           ToHex(static_cast<const std::uint8_t*>(contents.Buffer), contents.BufferSize);
}

// Element of a type as the decoder makes it from what a device might send; null when the type can be nothing at all,
// and is.
Value Generated(const TypeInfo& type, unsigned seed) {
    std::vector<std::uint8_t> encoded(65536);
    Writer out(encoded);
    testing_support::ValueGenerator(out, seed).Element(type, APPLICATION);
    CPropertyContents contents;
    if (DecodeRecords(out.Written(), type.Type, contents) != DecodeResult::ok || contents.ElementCount != 1)
        return nullptr;
    Value value = NewValue(type.Type);
    return value != nullptr && value->ReadFrom(contents) ? std::move(value) : nullptr;
}

void ExpectSame(const CPropertyValue& value, CPropertyValue& fresh, const std::string& what) {
    value_t json;
    ASSERT_TRUE(value.Encode(json)) << what;
    ASSERT_TRUE(fresh.Decode(json)) << what << ' ' << Text(json);
    ASSERT_EQ(Bytes(fresh), Bytes(value)) << what << ' ' << Text(json);
    value_t again;
    ASSERT_TRUE(fresh.Encode(again));
    EXPECT_TRUE(again == json) << what;
}

} // namespace

TEST(JsonForm, OfEveryTypeGivesTheSameBytesBack) {
    unsigned types = 0;
    for (const TypeInfo& type : AllTypes()) {
        if (NewValue(type.Type) == nullptr)
            continue;
        ++types;
        unsigned values = 0;
        for (unsigned seed = 0; seed < 100; ++seed) {
            const Value value = Generated(type, seed);
            if (value == nullptr)
                continue;
            ++values;
            const Value fresh = NewValue(type.Type);
            ExpectSame(*value, *fresh, type.Name + std::string(" ") + std::to_string(seed));
        }
        EXPECT_GE(values, 25U) << type.Name;
    }
    EXPECT_GE(types, 55U);
}

TEST(JsonForm, OfListsIsAnArray) {
    for (const TypeInfo& type : AllTypes()) {
        if (NewValue(type.Type) == nullptr)
            continue;
        const BACSTAC_DATA_TYPE elementType = type.Type == TYPE_ANY ? TYPE_ANY_PRIMITIVE : type.Type;
        CPropertyValueList list(elementType);
        std::vector<Value> elements;
        for (unsigned seed = 0; seed < 8; ++seed) {
            if (Value value = Generated(type, seed))
                elements.push_back(std::move(value));
        }
        list.Reset(static_cast<unsigned>(elements.size()));
        for (unsigned i = 0; i < list.GetElementCnt(); ++i)
            list.SetElement(i, elements[i].release());
        CPropertyValueList fresh(elementType);
        ExpectSame(list, fresh, type.Name);
    }
    CPropertyValueList gap(TYPE_UNSIGNED);
    gap.Reset(1);
    EXPECT_EQ(Encoded(gap), "none") << "an element that was never set has no form";
}

TEST(JsonForm, OfNewValuesGivesTheSameBytesBack) {
    for (const TypeInfo& type : AllTypes()) {
        const Value value = NewValue(type.Type);
        // A new setpoint reference is absent but has a property ready for who edits it: that is no part of its form.
        if (value == nullptr || type.Type == TYPE_SETPOINT_REF)
            continue;
        ExpectSame(*value, *NewValue(type.Type), type.Name);
    }
    CPVAnyPrimitive none;
    EXPECT_EQ(Encoded(none), "null");
    CPVAnyPrimitive cleared;
    cleared.Assign(new CPVReal);
    EXPECT_TRUE(cleared.Decode(value_t()));
    EXPECT_EQ(cleared.GetValueType(), TYPE_NONE);
}

TEST(JsonForm, IsAsItIsDescribed) {
    CPVReal real;
    real.Value = 21.5F;
    EXPECT_EQ(Encoded(real), "21.5");
    CPVAnyPrimitive any;
    any.Assign(real.Clone());
    EXPECT_EQ(Encoded(any), R"({"real":21.5})");
    CPVString text;
    text.Value = "K\xC3\xBChl";
    EXPECT_EQ(Encoded(text), "\"K\xC3\xBChl\"");
    CPVOctetString octets;
    octets.Assign(3, "\x01\xAB\xFF");
    EXPECT_EQ(Encoded(octets), "\"01abff\"");
    CPVBitString bits;
    bits.Value = {4, {0x05}};
    EXPECT_EQ(Encoded(bits), "\"1010\"");
    EXPECT_EQ(Encoded(CPVDate()), R"({"year":null,"month":null,"day":null,"weekday":null})");
    CPVObjectId id;
    id.Value = {OBJ_BINARY_OUTPUT, 7};
    EXPECT_EQ(Encoded(id), R"({"type":4,"instance":7})");
    CPVDevObjPropRef reference;
    EXPECT_EQ(Encoded(reference), R"({"object":{"type":0,"instance":0},"property":85})");
    CPVPropertyState state;
    state.Value = {7, {}};
    state.Value.Value = 9;
    EXPECT_EQ(Encoded(state), R"({"reliability":9})");
    state.Value.Type = 200; // of a newer standard
    EXPECT_EQ(Encoded(state), R"({"200":9})");
    CPVEventParameter parameter;
    parameter.SetEventType(11);
    EXPECT_EQ(Encoded(parameter), R"({"event-type":11,"parameters":{"time-delay":0,"low-limit":0,"high-limit":0}})");
}

TEST(JsonForm, KeepsNumbersThatJsonHasNot) {
    for (const std::uint32_t bits :
         {0x7FC00000U, 0xFFC00000U, 0x7FC12345U, 0x7F800000U, 0xFF800000U, 0x80000000U, 1U}) {
        CPVReal value;
        value.Value = std::bit_cast<float>(bits);
        CPVReal fresh;
        ExpectSame(value, fresh, std::to_string(bits));
    }
    CPVDouble value;
    value.Value = std::bit_cast<double>(0xFFF8000000000001U);
    CPVDouble fresh;
    ExpectSame(value, fresh, "NaN");
    EXPECT_EQ(Encoded(value), "\"NaN:fff8000000000001\"");
    value.Value = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Encoded(value), "\"NaN\"");
    BACSTAC_DATE cleared{0xFFFF, 0, 0, 0xFFFFFFFFU, 0};
    CPVDate date;
    date.Value = cleared;
    CPVDate other;
    ExpectSame(date, other, "day");
}

TEST(JsonForm, RefusesWhatIsOfAnotherTypeAndStaysAsItWas) {
    CPVUnsigned value;
    value.Value = 17;
    for (const value_t& wrong :
         {value_t(), value_t(true), value_t(-1.0), value_t(std::int64_t{-1}), value_t(std::int64_t{1} << 32),
          value_t(std::string("17")), value_t(value_t::array_t()), value_t(value_t::object_t())})
        EXPECT_FALSE(value.Decode(wrong)) << Text(wrong);
    EXPECT_EQ(value.Value, 17U);

    CPVDevObjPropRef reference;
    reference.Value.Property = 1;
    value_t json;
    ASSERT_TRUE(reference.Encode(json));
    value_t more = json;
    more.add("colour", value_t(true));
    EXPECT_FALSE(reference.Decode(more)) << "members that the type does not have";
    value_t less;
    less.add("property", value_t(std::int64_t{85}));
    EXPECT_FALSE(reference.Decode(less)) << "a required member is missing";
    EXPECT_EQ(reference.Value.Property, 1U);
    CPVString text;
    EXPECT_FALSE(text.Decode(value_t(std::string("a\0b", 3))));
    CPVBitString bits;
    EXPECT_FALSE(bits.Decode(value_t(std::string(97, '1'))));
    EXPECT_FALSE(bits.Decode(value_t(std::string("012"))));
}

// Any form offered to any type: taken or refused, never more than that.
TEST(JsonForm, OfOneTypeDoesNotHarmAnother) {
    std::vector<value_t> forms;
    for (const TypeInfo& type : AllTypes()) {
        if (const Value value = Generated(type, 3))
            value->Encode(forms.emplace_back());
    }
    for (const TypeInfo& type : AllTypes()) {
        const Value value = NewValue(type.Type);
        if (value == nullptr)
            continue;
        for (const value_t& form : forms) {
            const std::string before = Bytes(*value);
            if (!value->Decode(form)) {
                EXPECT_EQ(Bytes(*value), before) << type.Name << ' ' << Text(form);
            }
        }
    }
}

TEST(JsonForm, NamesOfMembersAndAlternativesAreUnique) {
    for (const TypeInfo& type : AllTypes()) {
        std::set<std::string> names;
        for (const Member& member : type.Members)
            EXPECT_TRUE(names.insert(member.Name).second) << type.Name << ' ' << member.Name;
    }
}

TEST(JsonForm, TakesLargeLists) {
    CPVReadAccessSpec specification;
    CPropertyValueList& properties = specification.GetProperties();
    properties.Reset(20000);
    for (unsigned i = 0; i < 20000; ++i) {
        auto reference = std::make_unique<CPVPropertyRef>();
        reference->Value.Property = i;
        properties.SetElement(i, reference.release());
    }
    CPVReadAccessSpec fresh;
    ExpectSame(specification, fresh, "20000 references");
}
