#include "api/bacnet/PropertyValues.h"

#include "api/bacnet/BacGeneral.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/value/ValueFactory.h"
#include "tests/unit/stack/codec/GoldenValues.h"
#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>

using namespace bacnet;

namespace {

using ValuePtr = std::unique_ptr<CPropertyValue>;

ValuePtr Create(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property, BACSTAC_DATA_TYPE type, int count) {
    return ValuePtr(CPropertyValue::CreateValue(objectType, property, type, count));
}

std::string Encoded(const BACSTAC_PROPERTY_CONTENTS& contents) {
    std::vector<std::uint8_t> buffer(4096);
    Writer writer(buffer);
    if (!EncodeContents(writer, contents) || writer.Overflow())
        return "not encoded";
    return ToHex(buffer.data(), writer.Size());
}

// Through contents that are just large enough.
std::string Encoded(const CPropertyValue& value) {
    CPropertyContents contents(value.GetDataSize());
    if (!value.WriteTo(contents))
        return "not written";
    return Encoded(contents);
}

std::string Spaced(const char* hex) {
    const auto octets = Hex(hex);
    return ToHex(octets.data(), octets.size());
}

ValuePtr FromWire(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property, int arrayIndex, const char* hex) {
    CPropertyContents contents;
    EXPECT_EQ(DecodeProperty(Hex(hex), objectType, property, arrayIndex, contents), DecodeResult::ok);
    ValuePtr value = Create(objectType, property, TYPE_NONE, arrayIndex >= 0 ? 1 : -1);
    if (value == nullptr || !value->ReadFrom(contents))
        return nullptr;
    return value;
}

// Types that only log buffers and notifications have: nobody edits or copies them.
const std::set<BACSTAC_DATA_TYPE> WITHOUT_VALUES = {TYPE_RAW_STRING,
                                                    TYPE_LOG_ITEM,
                                                    TYPE_LOG_RECORD,
                                                    TYPE_EVENT_NOTIF,
                                                    TYPE_NOTIFICATION_PARAMETERS,
                                                    TYPE_EVENT_LOG_RECORD,
                                                    TYPE_LOG_MULTIPLE_RECORD,
                                                    TYPE_AUDIT_LOG_RECORD,
                                                    PART_LOG_DATUM,
                                                    PART_LOG_MULTIPLE_DATA,
                                                    PART_EVENT_LOG_DATUM,
                                                    PART_AUDIT_LOG_DATUM};

bool HasValue(BACSTAC_DATA_TYPE type) {
    return WITHOUT_VALUES.count(type) == 0 && (type < NP || type >= NP + 100);
}

// Whether a new value lacks something that its encoding cannot leave out: a value of any type.
bool NeedsValue(const TypeInfo& type) {
    for (const Member& member : type.Members) {
        const bool required = member.Optional == Presence::required;
        if (required && (member.Form == MemberForm::any ||
                         (member.Form == MemberForm::value && NeedsValue(*FindType(member.Type)))))
            return true;
        if (type.Kind == TypeKind::choice)
            return false; // it has its first alternative
    }
    return false;
}

} // namespace

TEST(PropertyValue, EveryTypeButTheLogsAndNotificationsHasOne) {
    for (const TypeInfo& type : AllTypes()) {
        const ValuePtr value = NewValue(type.Type);
        EXPECT_EQ(value != nullptr, HasValue(type.Type)) << type.Name;
        if (value == nullptr)
            continue;
        EXPECT_EQ(value->GetDataType(), type.Type == TYPE_ANY ? TYPE_ANY_PRIMITIVE : type.Type) << type.Name;
        EXPECT_TRUE(type.Size == 0 || value->ElementSize() == type.Size) << type.Name;
    }
    EXPECT_EQ(NewValue(999), nullptr);
    EXPECT_EQ(NewValue(TYPE_NONE), nullptr);
    EXPECT_EQ(NewValue(TYPE_RAW), nullptr);
}

TEST(PropertyValue, EveryPropertyOfEveryObjectTypeButLogBuffersHasOne) {
    for (const ObjectTypeInfo& object : AllObjectTypes()) {
        for (const PropertyInfo& property : object.Properties) {
            const ValuePtr value = Create(object.Type, property.Property, TYPE_NONE, -1);
            const bool expected = HasValue(property.Type);
            EXPECT_EQ(value != nullptr, expected) << object.Name << " " << property.Property;
            // A daily schedule and an action list are collections by themselves.
            const bool nested = property.Type == TYPE_DAILY_SCHEDULE || property.Type == TYPE_ACTION_LIST;
            EXPECT_TRUE(value == nullptr || nested ||
                        value->IsCollection() == (property.Shape != PropertyShape::single))
                << object.Name << " " << property.Property;
        }
    }
}

TEST(PropertyValue, NewValuesCanBeWritten) {
    for (const TypeInfo& type : AllTypes()) {
        const ValuePtr value = NewValue(type.Type);
        if (value == nullptr || type.Type == TYPE_ANY)
            continue;
        CPropertyContents contents(value->GetDataSize());
        EXPECT_TRUE(value->WriteTo(contents)) << type.Name;
        EXPECT_EQ(contents.DataType, type.Type) << type.Name;
        EXPECT_EQ(Encoded(contents) == "not encoded", NeedsValue(type)) << type.Name;
    }
}

TEST(PropertyValue, ReadsAndWritesEveryGoldenValue) {
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        const ValuePtr value = NewValue(golden.Type);
        if (value == nullptr)
            continue;
        CPropertyContents contents(1024);
        ASSERT_EQ(DecodeRecords(Hex(golden.Hex), golden.Type, contents), DecodeResult::ok);
        ASSERT_TRUE(value->ReadFrom(contents)) << golden.Type << " " << golden.What;
        EXPECT_EQ(Encoded(*value), Spaced(golden.Hex)) << golden.Type << " " << golden.What;
        const ValuePtr clone(value->Clone());
        EXPECT_EQ(clone->GetDataType(), value->GetDataType());
        EXPECT_EQ(Encoded(*clone), Spaced(golden.Hex)) << golden.Type << " " << golden.What;
    }
}

TEST(PropertyValue, ExchangesEveryGoldenValueWithRawMemory) {
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        const ValuePtr value = NewValue(golden.Type);
        if (value == nullptr || golden.Type == TYPE_ANY)
            continue;
        CPropertyContents contents(1024);
        ASSERT_EQ(DecodeRecords(Hex(golden.Hex), golden.Type, contents), DecodeResult::ok);
        ASSERT_TRUE(value->ReadFrom(contents));
        std::vector<std::uint8_t> memory(value->GetDataSize());
        CHeap heap;
        ASSERT_TRUE(value->WriteTo(memory.data(), heap)) << golden.Type << " " << golden.What;
        const ValuePtr other = NewValue(golden.Type);
        ASSERT_TRUE(other->ReadFrom(memory.data())) << golden.Type << " " << golden.What;
        EXPECT_EQ(Encoded(*other), Spaced(golden.Hex)) << golden.Type << " " << golden.What;
    }
}

// Conditions of reports keep a value in an area of bytes, and its heap is gone by the time that it is read.
TEST(PropertyValue, PrimitivesInRawMemoryNeedNoHeap) {
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        if (golden.Type > TYPE_STRING || golden.Type == TYPE_OCTET_STRING || golden.Type == TYPE_RAW_STRING)
            continue;
        const ValuePtr value = NewValue(golden.Type);
        CPropertyContents contents(1024);
        ASSERT_EQ(DecodeRecords(Hex(golden.Hex), golden.Type, contents), DecodeResult::ok);
        ASSERT_TRUE(value->ReadFrom(contents));
        std::vector<std::uint8_t> memory(value->GetDataSize());
        {
            CHeap heap;
            ASSERT_TRUE(value->WriteTo(memory.data(), heap));
        }
        const ValuePtr other = NewValue(golden.Type);
        ASSERT_TRUE(other->ReadFrom(memory.data())) << golden.Type << " " << golden.What;
        EXPECT_EQ(Encoded(*other), Spaced(golden.Hex)) << golden.Type << " " << golden.What;
    }
    CPVString text;
    text.Value = "in place";
    std::vector<std::uint8_t> memory(text.GetDataSize());
    CHeap heap;
    ASSERT_TRUE(text.WriteTo(memory.data(), heap));
    EXPECT_STREQ(reinterpret_cast<const char*>(memory.data()), "in place");
}

TEST(PropertyValue, RefusesContentsOfAnotherTypeAndSmallBuffers) {
    CPropertyContents contents(64);
    ASSERT_EQ(DecodeRecords(Hex("2105"), TYPE_UNSIGNED, contents), DecodeResult::ok);
    CPVReal real;
    EXPECT_FALSE(real.ReadFrom(contents));
    CPropertyContents none(64);
    EXPECT_FALSE(real.ReadFrom(none));
    EXPECT_FALSE(real.ReadFrom(nullptr));
    CPropertyContents small(3);
    EXPECT_FALSE(real.WriteTo(small));
    EXPECT_EQ(small.DataType, -1);
    CHeap heap;
    EXPECT_FALSE(real.WriteTo(nullptr, heap));
    contents.ElementCount = 0;
    CPVUnsigned number;
    EXPECT_FALSE(number.ReadFrom(contents));
}

TEST(PropertyValue, RefusesRecordsThatReferOutOfTheirBuffer) {
    CPropertyContents contents(64);
    const BACSTAC_SPECIAL_EVENT event{1, {}, 3, {5, 60}};
    std::memset(contents.Buffer, 0, 64);
    std::memcpy(contents.Buffer, &event, sizeof(event));
    contents.DataType = TYPE_SPECIAL_EVENT;
    contents.ElementCount = 1;
    CPVSpecialEvent value;
    EXPECT_FALSE(value.ReadFrom(contents));
    EXPECT_EQ(value.Value.Priority, 16U);
    EXPECT_EQ(value.GetTimeValues().GetElementCnt(), 0U);
}

TEST(PropertyValue, HasNoneForProprietaryPropertiesWithoutAType) {
    EXPECT_EQ(Create(128, 600, TYPE_NONE, -1), nullptr);
    const ValuePtr value = Create(128, 600, TYPE_REAL, -1);
    ASSERT_NE(value, nullptr);
    EXPECT_FALSE(value->IsCollection());
    EXPECT_EQ(value->GetDataType(), TYPE_REAL);
    EXPECT_EQ(value->GetObjType(), 128U);
    EXPECT_EQ(value->GetPropId(), 600U);
    const ValuePtr list = Create(128, 600, TYPE_REAL, 0);
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->IsCollection());
    EXPECT_EQ(Create(128, 600, 999, 1), nullptr);
}

TEST(PropertyValue, TakesTheStandardsTypeAndForm) {
    EXPECT_EQ(Create(0, PROP_PRESENT_VALUE, TYPE_NONE, -1)->GetDataType(), TYPE_REAL);
    EXPECT_EQ(Create(0, PROP_OBJECT_NAME, TYPE_NONE, -1)->GetDataType(), TYPE_STRING);
    const ValuePtr objects = Create(OBJ_DEVICE, PROP_OBJECT_LIST, TYPE_NONE, -1);
    EXPECT_TRUE(objects->IsCollection());
    EXPECT_EQ(objects->GetDataType(), TYPE_OBJECT_ID);
    EXPECT_EQ(static_cast<CPropertyValueList&>(*objects).GetFixedCnt(), 0U);
    const ValuePtr object = Create(OBJ_DEVICE, PROP_OBJECT_LIST, TYPE_NONE, 1);
    EXPECT_FALSE(object->IsCollection());
    const ValuePtr priorities = Create(1, 87, TYPE_NONE, -1);
    EXPECT_TRUE(priorities->IsCollection());
    EXPECT_EQ(priorities->GetDataType(), TYPE_ANY_PRIMITIVE);
    EXPECT_EQ(static_cast<CPropertyValueList&>(*priorities).GetFixedCnt(), 16U);
    EXPECT_EQ(Create(1, 87, TYPE_NONE, 1)->GetDataType(), TYPE_ANY_PRIMITIVE);
}

// The properties whose names give a property state its values stand for any object type.
TEST(PropertyValue, MakesEnumerationsOfPropertiesThatTheTypeDoesNotHave) {
    for (const BACSTAC_PROPERTY_ID property :
         {85U, 37U, 84U, 90U, 92U, 100U, 103U, 36U, 112U, 117U, 160U, 164U, 196U, 226U}) {
        const ValuePtr value = Create(9, property, TYPE_ENUMERATED, -1);
        ASSERT_NE(value, nullptr) << property;
        EXPECT_FALSE(value->IsCollection()) << property;
        std::uint32_t field = 2;
        EXPECT_TRUE(value->ReadFrom(&field));
        EXPECT_EQ(static_cast<CPVEnumerated&>(*value).Value, 2U);
        static_cast<CPVEnumerated&>(*value).Value = 3;
        CHeap heap;
        EXPECT_TRUE(value->WriteTo(&field, heap));
        EXPECT_EQ(field, 3U);
    }
}

TEST(PropertyValue, WeeklySchedulesAreListsInAnArray) {
    const char* hex = "0E B4080000004441A80000 B4120000004441800000 0F 0E0F 0E0F 0E0F 0E0F 0E0F 0E B400000000 00 0F";
    const ValuePtr value = FromWire(17, 123, -1, hex);
    ASSERT_NE(value, nullptr);
    auto& week = static_cast<CPropertyValueList&>(*value);
    EXPECT_EQ(week.GetFixedCnt(), 7U);
    ASSERT_EQ(week.GetElementCnt(), 7U);
    EXPECT_EQ(week.GetDataType(), TYPE_DAILY_SCHEDULE);
    ASSERT_TRUE(week.GetElement(0)->IsCollection());
    EXPECT_EQ(week.GetElement(0)->GetDataType(), TYPE_DAILY_SCHEDULE);
    auto& monday = static_cast<CPropertyValueList&>(*week.GetElement(0));
    ASSERT_EQ(monday.GetElementCnt(), 2U);
    auto& first = static_cast<CPVTimeValue&>(*monday.GetElement(0));
    EXPECT_EQ(first.GetDataType(), TYPE_TIME_VALUE);
    EXPECT_EQ(first.Value.Time.Hour, 8);
    EXPECT_EQ(first.GetValue().GetValueType(), TYPE_REAL);
    EXPECT_EQ(Encoded(week), Spaced(hex));

    // what an editor does: change a copy of a day and give it back
    ValuePtr edited(monday.Clone());
    auto& copy = static_cast<CPropertyValueList&>(*edited);
    copy.Reset(1);
    auto* noon = new CPVTimeValue;
    noon->Value.Time = {12, 0, 0, 0};
    noon->GetValue().Assign(new CPVNull);
    ASSERT_TRUE(copy.SetElement(0, noon));
    ASSERT_TRUE(week.SetElement(0, edited.release()));
    EXPECT_EQ(Encoded(week), Spaced("0E B40C000000 00 0F 0E0F 0E0F 0E0F 0E0F 0E0F 0E B400000000 00 0F"));

    // one day by its index
    const ValuePtr sunday = FromWire(17, 123, 7, "0E B400000000 00 0F");
    ASSERT_NE(sunday, nullptr);
    EXPECT_EQ(Encoded(*sunday), Spaced("0E B400000000 00 0F"));
}

TEST(PropertyValueList, OwnsItsElements) {
    CPropertyValueList list(TYPE_UNSIGNED, 4);
    EXPECT_EQ(list.GetFixedCnt(), 4U);
    EXPECT_EQ(list.GetElementCnt(), 0U);
    list.Reset(2);
    EXPECT_EQ(list.GetElementCnt(), 2U);
    EXPECT_EQ(list.GetElement(0), nullptr);
    EXPECT_EQ(Encoded(list), "not written"); // a place without a value
    for (unsigned i = 0; i < 2; ++i) {
        auto* number = static_cast<CPVUnsigned*>(list.CreateElement());
        number->Value = i + 1;
        EXPECT_TRUE(list.SetElement(i, number));
    }
    EXPECT_FALSE(list.SetElement(2, new CPVUnsigned)); // deleted, not leaked
    EXPECT_EQ(list.GetElement(2), nullptr);
    EXPECT_TRUE(list.SetElement(1, new CPVUnsigned)); // the old one is deleted
    EXPECT_EQ(Encoded(list), "21 01 21 00");
}

TEST(PropertyValueList, AssignsDeepCopies) {
    CPropertyValueList list(TYPE_STRING);
    list.SetPropId(13, 110);
    list.Reset(1);
    auto* text = new CPVString;
    text->Value = "one";
    list.SetElement(0, text);
    CPropertyValueList other(TYPE_STRING);
    other.Assign(list);
    text->Value = "two";
    EXPECT_EQ(static_cast<CPVString*>(other.GetElement(0))->Value, "one");
    EXPECT_EQ(other.GetPropId(), 110U);
    EXPECT_EQ(other.GetElement(0)->GetPropId(), 110U);
    list.Assign(list);
    EXPECT_EQ(list.GetElementCnt(), 1U);
}

TEST(PropertyValueList, HoldsPrioritiesOfAnyType) {
    const char* hex = "00 00 4442900000 00 9101 0E 2101 0F 00 00 00 00 00 00 00 00 00 21 FF";
    const ValuePtr value = FromWire(1, 87, -1, hex);
    ASSERT_NE(value, nullptr);
    auto& list = static_cast<CPropertyValueList&>(*value);
    ASSERT_EQ(list.GetElementCnt(), 16U);
    EXPECT_EQ(list.GetElement(2)->GetDataType(), TYPE_ANY_PRIMITIVE);
    const auto at = [&](unsigned i) -> CPVAnyPrimitive& { return static_cast<CPVAnyPrimitive&>(*list.GetElement(i)); };
    EXPECT_EQ(at(0).GetValueType(), TYPE_NULL);
    EXPECT_EQ(at(2).GetValueType(), TYPE_REAL);
    EXPECT_EQ(at(4).GetValueType(), TYPE_ENUMERATED);
    EXPECT_EQ(at(5).GetValueType(), TYPE_RAW); // a constructed value, which goes out as it came
    EXPECT_EQ(at(5).GetValue(), nullptr);
    EXPECT_EQ(Encoded(list), Spaced(hex));
}

TEST(AnyPrimitive, WritesContentsOfWhatItHolds) {
    CPVAnyPrimitive any;
    EXPECT_EQ(any.GetValueType(), TYPE_NONE);
    CPropertyContents contents(64);
    EXPECT_FALSE(any.WriteTo(contents));
    auto* real = new CPVReal;
    real->Value = 72.0F;
    any.Assign(real);
    EXPECT_EQ(any.GetDataType(), TYPE_ANY_PRIMITIVE);
    EXPECT_EQ(any.GetDataSize(), 4U);
    ASSERT_TRUE(any.WriteTo(contents));
    EXPECT_EQ(contents.DataType, TYPE_REAL);
    EXPECT_EQ(contents.ElementCount, 1U);
    CPVAnyPrimitive other;
    ASSERT_TRUE(other.ReadFrom(contents));
    EXPECT_EQ(static_cast<CPVReal*>(other.GetValue())->Value, 72.0F);
    other.Clear();
    EXPECT_EQ(other.GetValue(), nullptr);
    other.Assign(any);
    real->Value = 1.0F;
    EXPECT_EQ(static_cast<CPVReal*>(other.GetValue())->Value, 72.0F);
}

TEST(AnyPrimitive, GivesItsPropertyToItsValue) {
    CPVActionCommand command;
    command.GetValue().Assign(new CPVEnumerated);
    command.GetValue().SetPropId(3, PROP_PRESENT_VALUE);
    EXPECT_EQ(command.GetValue().GetValue()->GetObjType(), 3U);
    EXPECT_EQ(command.GetValue().GetValue()->GetPropId(), PROP_PRESENT_VALUE);
    command.Value.Reference.ObjectId = {3, 1};
    EXPECT_EQ(Encoded(command), "1C 00 C0 00 01 29 55 4E 91 00 4F 79 00 89 00");
}

TEST(EventParameter, HasNewParametersForANewType) {
    CPVEventParameter value;
    EXPECT_EQ(value.GetEventType(), 0U);
    EXPECT_EQ(value.GetParameters()->GetDataType(), EP + 0);
    value.SetPropId(9, 83);
    value.SetEventType(5);
    ASSERT_NE(value.GetParameters(), nullptr);
    EXPECT_EQ(value.GetParameters()->GetDataType(), EP + 5);
    EXPECT_EQ(value.GetParameters()->GetPropId(), 83U);
    static_cast<CPVEPOutOfRange*>(value.GetParameters())->Value = {5, 0.0F, 100.0F, 1.0F};
    EXPECT_EQ(Encoded(value), "5E 09 05 1C 00 00 00 00 2C 42 C8 00 00 3C 3F 80 00 00 5F");
    CPVEventParameter copy;
    copy.Assign(value);
    value.SetEventType(1);
    EXPECT_EQ(copy.GetEventType(), 5U);
    EXPECT_EQ(Encoded(copy), "5E 09 05 1C 00 00 00 00 2C 42 C8 00 00 3C 3F 80 00 00 5F");
    for (const unsigned complexAndOldBufferReady : {6U, 7U, 4000000000U}) {
        value.SetEventType(complexAndOldBufferReady);
        EXPECT_EQ(value.GetParameters(), nullptr);
        EXPECT_EQ(value.GetEventType(), complexAndOldBufferReady);
    }
}

TEST(PropertyValue, NewOnesHaveTheDefaultsOfTheForms) {
    CPVDevObjPropRef reference;
    EXPECT_EQ(reference.Value.ObjectId, (BACSTAC_OBJECT_ID{0, 0}));
    EXPECT_EQ(reference.Value.Property, 85U);
    EXPECT_EQ(reference.Value.ArrayIndex, 0xFFFFFFFFU);
    EXPECT_EQ(reference.Value.DevicePresent, 0U);
    EXPECT_EQ(reference.Value.DeviceId, (BACSTAC_OBJECT_ID{8, 0}));
    CPVDate date;
    EXPECT_EQ(date.Value.Year, 0xFFFF);
    EXPECT_EQ(date.Value.Month, 0U);
    EXPECT_EQ(date.Value.Day, 255U);
    EXPECT_EQ(date.Value.Weekday, 0U);
    CPVWeekNDay week;
    EXPECT_EQ(week.Value.Week, 0xFFFFFFFFU);
    CPVRecipient recipient;
    EXPECT_EQ(recipient.Value.Choice, 0U);
    EXPECT_EQ(recipient.Value.Device, (BACSTAC_OBJECT_ID{8, 0}));
    CPVActionCommand command;
    EXPECT_EQ(command.Value.Priority, -1);
    CPVShedLevel shed;
    EXPECT_EQ(shed.Value.Percent, 100U);
}

TEST(PropertyValue, TextOfAListHasItsElements) {
    const ValuePtr value = FromWire(OBJ_DEVICE, PROP_OBJECT_LIST, -1, "C402000457 C400000001");
    ASSERT_NE(value, nullptr);
    const std::string text = value->ToText(-1);
    EXPECT_EQ(text.front(), '{');
    EXPECT_EQ(text.back(), '}');
    const std::string first = static_cast<CPropertyValueList&>(*value).GetElement(0)->ToText(1);
    EXPECT_NE(text.find(first), std::string::npos);
    EXPECT_NE(first.find("1111"), std::string::npos);
    EXPECT_EQ(value->GetPropName(), "object-list");
    EXPECT_EQ(CPVUnsigned().GetPropName(), "") << "it belongs to none";
    EXPECT_EQ(value->GetTypeName(), static_cast<CPropertyValueList&>(*value).GetElement(0)->GetTypeName());
}

TEST(PropertyValue, AListHasTheNameOfItsElementsAlsoWithinAList) {
    const CPVNestedList day(TYPE_DAILY_SCHEDULE, TYPE_TIME_VALUE);
    EXPECT_EQ(day.GetTypeName(), "time-value");
    EXPECT_EQ(CPropertyValueList(TYPE_DAILY_SCHEDULE).GetTypeName(), "daily-schedule");
}

TEST(PropertyValue, TextIsNeverCut) {
    CPVString value;
    value.SetPropId(0, PROP_OBJECT_NAME);
    value.Value.assign(5000, 'x');
    EXPECT_NE(value.ToText(-1).find(value.Value), std::string::npos);
    CPVAnyPrimitive empty;
    EXPECT_EQ(empty.ToText(-1), "");
}

// ---- contents and heap

TEST(PropertyContents, AreEmptyWhenTheyAreNew) {
    const CPropertyContents contents;
    EXPECT_EQ(contents.GetDataType(), -1);
    EXPECT_EQ(contents.GetElementCnt(), 0U);
    EXPECT_EQ(contents.GetBufferSize(), 131072U);
    EXPECT_NE(contents.GetBufferPtr(), nullptr);
    const CPropertyContents filled(4, "abc");
    EXPECT_STREQ(static_cast<const char*>(filled.GetBufferPtr()), "abc");
}

TEST(PropertyContents, CopiesAreIndependent) {
    CPropertyContents first(4, "abc");
    first.DataType = TYPE_STRING;
    first.ElementCount = 1;
    CPropertyContents second(first);
    CPropertyContents third(16);
    third = first;
    static_cast<char*>(first.Buffer)[0] = 'x';
    EXPECT_STREQ(static_cast<const char*>(second.Buffer), "abc");
    EXPECT_STREQ(static_cast<const char*>(third.Buffer), "abc");
    EXPECT_EQ(third.BufferSize, 4U);
    EXPECT_EQ(second.DataType, TYPE_STRING);
    EXPECT_EQ(third.ElementCount, 1U);
}

TEST(Heap, GivesAlignedZeroedMemoryThatStays) {
    CHeap heap;
    std::vector<unsigned char*> blocks;
    for (const std::size_t size : {1U, 17U, 4096U, 5000U, 0U, 8U, 100000U}) {
        auto* block = static_cast<unsigned char*>(heap.Allocate(size));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
        for (std::size_t i = 0; i < size; ++i)
            ASSERT_EQ(block[i], 0);
        std::memset(block, 0xEE, size);
        blocks.push_back(block);
    }
    EXPECT_EQ(blocks[0][0], 0xEE);
    EXPECT_EQ(blocks[3][4999], 0xEE);
}

// ---- ConvertRaw

TEST(ConvertRaw, LeavesDecodedContentsAlone) {
    CPropertyContents contents;
    ASSERT_EQ(DecodeProperty(Hex("4442900000"), 0, PROP_PRESENT_VALUE, -1, contents), DecodeResult::ok);
    EXPECT_TRUE(ConvertRaw(contents, 0, PROP_PRESENT_VALUE));
    EXPECT_TRUE(ConvertRaw(contents, 0, PROP_PRESENT_VALUE));
    EXPECT_EQ(contents.DataType, TYPE_REAL);
    CPropertyContents none;
    EXPECT_FALSE(ConvertRaw(none, 0, PROP_PRESENT_VALUE));
    EXPECT_LT(none.DataType, 0);
}

TEST(ConvertRaw, MakesTextOfRawStrings) {
    CPropertyContents contents(64);
    // two strings in ISO 8859-1: a u with dots, "K"
    const auto raw = Hex("02000000 05FC0000 02000000 054B0000");
    std::memcpy(contents.Buffer, raw.data(), raw.size());
    contents.DataType = TYPE_RAW_STRING;
    contents.ElementCount = 2;
    ASSERT_TRUE(ConvertRaw(contents, 0, PROP_DESCRIPTION));
    EXPECT_EQ(contents.DataType, TYPE_STRING);
    EXPECT_EQ(contents.ElementCount, 2U);
    EXPECT_EQ(std::memcmp(contents.Buffer, "\xC3\xBC\0K\0", 5), 0);
}

TEST(ConvertRaw, DecodesOctetsByTheirProperty) {
    // read as a property that nobody knows, shown as one that is known
    CPropertyContents contents;
    const auto week = Hex("0E B4080000004441A80000 0F 0E0F");
    ASSERT_EQ(DecodeProperty(week, 200, 600, -1, contents), DecodeResult::raw);
    ASSERT_TRUE(ConvertRaw(contents, 17, 123));
    EXPECT_EQ(contents.DataType, TYPE_DAILY_SCHEDULE);
    EXPECT_EQ(contents.ElementCount, 2U);
    ASSERT_EQ(DecodeProperty(week, 200, 600, -1, contents), DecodeResult::raw);
    EXPECT_FALSE(ConvertRaw(contents, 200, 600));
    EXPECT_LT(contents.DataType, 0);
    EXPECT_EQ(Encoded(contents), ToHex(week.data(), week.size()));
}
