// The device that holds an object of every type: every property of the standard can be read, and is what the standard
// says it is.
#include "simulator/Museum.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/TypeTable.h"
#include "simulator/model/DefaultValue.h"
#include "simulator/model/Device.h"
#include "simulator/model/Grammar.h"

#include <gtest/gtest.h>

#include <set>

namespace sim {
namespace {

class Museum : public ::testing::Test {
protected:
    std::optional<std::vector<std::uint8_t>> Read(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property) {
        const Object* object = m_device.Find(id);
        std::vector<std::uint8_t> octets(64 * 1024);
        bacnet::Writer writer(octets);
        if (object == nullptr || !object->Read(property, WHOLE, writer).Ok())
            return std::nullopt;
        octets.resize(writer.Size());
        return octets;
    }

    Device m_device{MuseumDevice(500), [] { return LocalTime{178'000'000'000}; }};
};

std::string Describe(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property) {
    return "type " + std::to_string(id.Type) + " property " + std::to_string(property);
}

TEST_F(Museum, EveryPropertyOfEveryTypeIsThere) {
    std::size_t properties = 0;
    for (const bacnet::ObjectTypeInfo& type : bacnet::AllObjectTypes()) {
        const BACSTAC_OBJECT_ID id{type.Type, type.Type == OBJ_DEVICE ? 500U : 1U};
        for (const bacnet::PropertyInfo& property : type.Properties) {
            SCOPED_TRACE(Describe(id, property.Property));
            const bool isBuffer = property.Property == PROP_LOG_BUFFER && m_device.Find(id)->AsLog() != nullptr;
            // Only files of records know how many they have.
            const bool isRecordCount = type.Type == OBJ_FILE && property.Property == PROP_RECORD_COUNT;
            EXPECT_EQ(Read(id, property.Property).has_value(), !isBuffer && !isRecordCount);
            ++properties;
        }
    }
    EXPECT_GT(properties, 2000U);
}

// The stack's decoder and the simulator's grammar agree that values are of the types that the tables give.
TEST_F(Museum, EveryValueIsOfItsType) {
    std::vector<std::uint8_t> buffer(256 * 1024);
    for (const bacnet::ObjectTypeInfo& type : bacnet::AllObjectTypes()) {
        const BACSTAC_OBJECT_ID id{type.Type, type.Type == OBJ_DEVICE ? 500U : 1U};
        for (const bacnet::PropertyInfo& property : type.Properties) {
            const auto octets = Read(id, property.Property);
            if (!octets || property.Type == TYPE_NONE)
                continue;
            SCOPED_TRACE(Describe(id, property.Property));
            EXPECT_TRUE(property.Shape == bacnet::PropertyShape::single
                            ? IsOneOf(*octets, property.Type)
                            : SplitElements(*octets, property.Type).has_value());
            BACSTAC_PROPERTY_CONTENTS contents{};
            contents.Buffer = buffer.data();
            contents.BufferSize = static_cast<std::uint32_t>(buffer.size());
            EXPECT_EQ(bacnet::DecodeProperty(*octets, type.Type, property.Property, BACSTAC_NO_INDEX, contents),
                      bacnet::DecodeResult::ok);
            if (property.Type != TYPE_ANY) {
                EXPECT_EQ(contents.DataType, property.Type);
            }
        }
    }
}

TEST_F(Museum, EventParametersOfAllFormsCanBeRead) {
    std::vector<std::uint8_t> buffer(64 * 1024);
    for (std::uint32_t form = 0; form < Alternatives(TYPE_EVENT_PARAMETER); ++form) {
        SCOPED_TRACE(form);
        const auto octets = Read({OBJ_EVENT_ENROLLMENT, EnrollmentOf(form)}, 83);
        ASSERT_TRUE(octets.has_value());
        EXPECT_TRUE(IsOneOf(*octets, TYPE_EVENT_PARAMETER));
        bacnet::Reader in(*octets);
        bacnet::Tag tag;
        ASSERT_TRUE(in.PeekTag(tag));
        EXPECT_EQ(tag.Number, form);
        BACSTAC_PROPERTY_CONTENTS contents{};
        contents.Buffer = buffer.data();
        contents.BufferSize = static_cast<std::uint32_t>(buffer.size());
        EXPECT_EQ(bacnet::DecodeProperty(*octets, OBJ_EVENT_ENROLLMENT, 83, BACSTAC_NO_INDEX, contents),
                  bacnet::DecodeResult::ok);
    }
}

// Each type by itself, whichever alternative is shown.
TEST(Defaults, AreOfTheirType) {
    for (const bacnet::TypeInfo& type : bacnet::AllTypes()) {
        for (unsigned which = 0; which < std::max(Alternatives(type.Type), 2U); ++which) {
            const Value value = DefaultElement(type.Type, which);
            EXPECT_TRUE(IsOneOf(value.Wire(), type.Type)) << type.Name << " " << which;
            if (!value.Wire().empty() && type.Type != TYPE_ANY) {
                // Cut anywhere, it is no such value any more, or a shorter one without its last optional members.
                const auto shorter = value.Wire().first(value.Wire().size() - 1);
                EXPECT_FALSE(IsOneOf(shorter, type.Type) && SplitElements(shorter, type.Type)->empty()) << type.Name;
            }
        }
    }
}

TEST_F(Museum, TheLogsHaveRecords) {
    for (const BACSTAC_OBJECT_TYPE type : {OBJ_TREND_LOG, OBJ_TREND_LOG_MULTIPLE, OBJ_EVENT_LOG})
        EXPECT_EQ(m_device.Records({type, 1}).size(), 20U);
}

TEST_F(Museum, EventLogRecordsAreEventLogRecords) {
    ASSERT_TRUE(m_device.RaiseEvent({OBJ_ANALOG_INPUT, 1}, 3));
    ASSERT_TRUE(m_device.SetLogEnabled({OBJ_EVENT_LOG, 1}, false));
    const auto records = m_device.Records({OBJ_EVENT_LOG, 1});
    ASSERT_EQ(records.size(), 22U);
    std::vector<std::uint8_t> octets(16 * 1024);
    bacnet::Writer writer(octets);
    for (const LogRecord& record : records)
        LogObject::Encode(record, OBJ_EVENT_LOG, writer);
    std::vector<std::uint8_t> buffer(64 * 1024);
    BACSTAC_PROPERTY_CONTENTS contents{};
    contents.Buffer = buffer.data();
    contents.BufferSize = static_cast<std::uint32_t>(buffer.size());
    EXPECT_EQ(bacnet::DecodeRecords(writer.Written(), TYPE_EVENT_LOG_RECORD, contents), bacnet::DecodeResult::ok);
    EXPECT_EQ(contents.ElementCount, 22U);
    EXPECT_TRUE(SplitElements(writer.Written(), TYPE_EVENT_LOG_RECORD).has_value());
}

TEST_F(Museum, ObjectsOfAllTypesHaveTheirOwnNames) {
    std::set<std::string> names;
    for (const BACSTAC_OBJECT_ID& id : m_device.ObjectList()) {
        const auto octets = Read(id, PROP_OBJECT_NAME);
        ASSERT_TRUE(octets.has_value());
        EXPECT_TRUE(names.insert({octets->begin(), octets->end()}).second) << Describe(id, PROP_OBJECT_NAME);
    }
}

} // namespace
} // namespace sim
