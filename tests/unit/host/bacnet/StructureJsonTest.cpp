// What read --json shows of a value, write takes: for every property of an object of every type.
#include "host/bacnet/StructureJson.h"

#include "api/bacnet/PropertyValue.h"
#include "host/bacnet/ValueJson.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/DefaultValue.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>

namespace {

using bacnet::PropertyInfo;

std::string Hex(std::span<const std::uint8_t> octets) {
    std::string text;
    for (const std::uint8_t octet : octets)
        text += "0123456789abcdef"[octet >> 4], text += "0123456789abcdef"[octet & 15];
    return text;
}

// As a write finds it.
ValueType TypeToWrite(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property,
                      const BACSTAC_PROPERTY_CONTENTS& held) {
    ValueType type = StandardType(objectType, property, BACSTAC_NO_INDEX);
    if ((type.type == TYPE_NONE || type.type == TYPE_ANY) && held.DataType != TYPE_NULL) {
        type.type = held.DataType;
        type.isList = type.isList || held.ElementCount > 1;
    }
    return type;
}

// Reads what is on the wire, and writes what was shown of it.
std::string Rewritten(std::span<const std::uint8_t> wire, BACSTAC_OBJECT_TYPE objectType,
                      BACSTAC_PROPERTY_ID property) {
    CPropertyContents contents;
    if (bacnet::DecodeProperty(wire, objectType, property, BACSTAC_NO_INDEX, contents) != bacnet::DecodeResult::ok)
        return "not decoded";
    const std::string shown = ValueJson({{objectType, 1}, property, BACSTAC_NO_INDEX, contents})["value"].dump();
    CTypedValue value;
    std::string error;
    if (!ParseValue(shown, TypeToWrite(objectType, property, contents), value, error))
        return shown + ": " + error;
    std::vector<std::uint8_t> octets(wire.size() + 1024);
    bacnet::Writer writer(octets);
    return bacnet::EncodeContents(writer, value.Contents()) ? Hex(writer.Written()) : shown + ": not encoded";
}

bool IsLog(BACSTAC_DATA_TYPE type) {
    return type == TYPE_LOG_RECORD || type == TYPE_EVENT_LOG_RECORD || type == TYPE_LOG_MULTIPLE_RECORD ||
           type == TYPE_AUDIT_LOG_RECORD;
}

std::string Parsed(std::string_view text, const ValueType& type) {
    CTypedValue value;
    std::string error;
    if (!ParseValue(text, type, value, error))
        return "error: " + error;
    std::vector<std::uint8_t> octets(1024);
    bacnet::Writer writer(octets);
    return bacnet::EncodeContents(writer, value.Contents()) ? Hex(writer.Written()) : "not encoded";
}

} // namespace

TEST(StructureJson, OfEveryPropertyIsTakenBack) {
    std::set<BACSTAC_DATA_TYPE> types;
    for (const bacnet::ObjectTypeInfo& object : bacnet::AllObjectTypes()) {
        for (const PropertyInfo& property : object.Properties) {
            if (IsLog(property.Type))
                continue; // nobody writes these
            const sim::Value value = sim::DefaultValue({object.Type, 1}, property, true);
            EXPECT_EQ(Rewritten(value.Wire(), object.Type, property.Property), Hex(value.Wire()))
                << object.Name << ' ' << property.Property;
            types.insert(property.Type);
        }
    }
    EXPECT_GT(types.size(), 60U);
}

TEST(StructureJson, OfEveryFormOfEventAndFaultParametersIsTakenBack) {
    constexpr BACSTAC_PROPERTY_ID EVENT_PARAMETERS = 83;
    constexpr BACSTAC_PROPERTY_ID FAULT_PARAMETERS = 358;
    for (unsigned form = 0; form < sim::Alternatives(TYPE_EVENT_PARAMETER); ++form) {
        const sim::Value value = sim::DefaultElement(TYPE_EVENT_PARAMETER, form);
        EXPECT_EQ(Rewritten(value.Wire(), OBJ_EVENT_ENROLLMENT, EVENT_PARAMETERS), Hex(value.Wire())) << form;
    }
    for (unsigned form = 0; form < sim::Alternatives(TYPE_FAULT_PARAMETER); ++form) {
        const sim::Value value = sim::DefaultElement(TYPE_FAULT_PARAMETER, form);
        EXPECT_EQ(Rewritten(value.Wire(), OBJ_EVENT_ENROLLMENT, FAULT_PARAMETERS), Hex(value.Wire())) << form;
    }
}

TEST(StructureJson, MayBeWrittenByHand) {
    const ValueType schedule{TYPE_DAILY_SCHEDULE, true, ENUM_NONE};
    EXPECT_EQ(Parsed(R"([{"day-schedule": [{"time": {"hour": 8, "minute": 0, "second": 0, "hundredths": 0},)"
                     R"( "value": {"real": 21.5}}]}, {"day-schedule": []}])",
                     schedule),
              "0eb4080000004441ac00000f0e0f");
    EXPECT_EQ(Parsed(R"(["ai:1", {"type": 8, "instance": 7}])", {TYPE_OBJECT_ID, true, ENUM_NONE}),
              "c400000001c402000007");
    EXPECT_EQ(Parsed("[1, 2]", {TYPE_UNSIGNED, true, ENUM_NONE}), "21012102");
    EXPECT_EQ(Parsed("[null, {\"real\": 1}]", {TYPE_ANY, true, ENUM_NONE}), "00443f800000");
    EXPECT_EQ(Parsed("\"0a1b\"", {TYPE_OCTET_STRING, false, ENUM_NONE}), "620a1b");
    EXPECT_EQ(Parsed("{}", {TYPE_SETPOINT_REF, false, ENUM_NONE}), "") << "no reference at all";
    EXPECT_EQ(Parsed("{}", {TYPE_UNSIGNED, true, ENUM_NONE}), "") << "an empty list, as text has it";
    EXPECT_EQ(Parsed("{\"a\", \"b\"}", {TYPE_STRING, true, ENUM_NONE}), "720061720062") << "a list as text has it";
}

TEST(StructureJson, OfAnotherTypeIsRefused) {
    const ValueType day{TYPE_DATE_TIME, false, ENUM_NONE};
    EXPECT_EQ(Parsed("{\"date\": 1}", day), "error: this is no date-time in the form that read --json shows");
    EXPECT_EQ(Parsed("[1, \"x\"]", {TYPE_UNSIGNED, true, ENUM_NONE}),
              "error: this is no list of unsigned in the form that read --json shows");
    EXPECT_EQ(Parsed("[1]", ValueType{}), "error: the type of such a value is not known here: give --type");
    EXPECT_EQ(Parsed("{\"name\": \"room\"}", {TYPE_XY_COLOR, false, ENUM_NONE}),
              "error: this is no xy-color in the form that read --json shows");
    EXPECT_EQ(
        Parsed("red", {TYPE_XY_COLOR, false, ENUM_NONE}),
        "error: a value of type xy-color cannot be written as text: give it as JSON, in the form that read --json "
        "shows");
}

TEST(StructureJson, OctetsOfAnUnknownTypeGoOutAsTheyAre) {
    EXPECT_EQ(Parsed("2e443f8000002f", {TYPE_RAW, false, ENUM_NONE}), "2e443f8000002f");
    EXPECT_EQ(Parsed("\"2e443f8000002f\"", {TYPE_RAW, false, ENUM_NONE}), "2e443f8000002f");
}
