#include "platform/stack/codec/ValueCodec.h"

#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Records.h"
#include "platform/stack/codec/Reader.h"
#include "tests/unit/stack/codec/GoldenValues.h"
#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>

using namespace bacnet;

namespace {

std::string Encoded(const BACSTAC_PROPERTY_CONTENTS& contents) {
    std::vector<std::uint8_t> buffer(4096);
    Writer writer(buffer);
    if (!EncodeContents(writer, contents) || writer.Overflow())
        return "not encoded";
    return ToHex(buffer.data(), writer.Size());
}

template <typename Value>
Value First(const BACSTAC_PROPERTY_CONTENTS& contents) {
    Value value{};
    std::memcpy(&value, contents.Buffer, sizeof(value));
    return value;
}

constexpr BACSTAC_OBJECT_TYPE VENDORS_TYPE = 200;
constexpr BACSTAC_PROPERTY_ID VENDORS_PROPERTY = 600;

} // namespace

TEST(ValueCodec, EveryTypeHasGoldenValues) {
    std::set<BACSTAC_DATA_TYPE> covered;
    for (const GoldenValue& golden : GOLDEN_VALUES)
        covered.insert(golden.Type);
    for (const TypeInfo& type : AllTypes()) {
        const bool partOfOthers = type.Type >= PART_LOG_DATUM;
        const bool neverDecoded = type.Type == TYPE_RAW_STRING;
        EXPECT_TRUE(covered.count(type.Type) != 0 || partOfOthers || neverDecoded) << type.Name << " " << type.Type;
    }
}

TEST(ValueCodec, DecodesAndEncodesEveryGoldenValue) {
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        const auto octets = Hex(golden.Hex);
        CPropertyContents contents(1024);
        DecodeFault fault;
        EXPECT_EQ(DecodeRecords(octets, golden.Type, contents, &fault), DecodeResult::ok)
            << golden.Type << " " << golden.What << ": " << DecodeErrorText(fault.Error) << " at " << fault.Offset;
        EXPECT_EQ(contents.DataType, golden.Type);
        EXPECT_EQ(contents.ElementCount, 1U) << golden.Type << " " << golden.What;
        EXPECT_EQ(Encoded(contents), ToHex(octets.data(), octets.size())) << golden.Type << " " << golden.What;
    }
}

TEST(ValueCodec, DecodesGoldenValuesInRows) {
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        if (golden.Type == NP + 6)
            continue; // takes all of them for one
        std::vector<std::uint8_t> octets;
        for (int i = 0; i < 3; ++i) {
            const auto one = Hex(golden.Hex);
            octets.insert(octets.end(), one.begin(), one.end());
        }
        CPropertyContents contents(2048);
        EXPECT_EQ(DecodeRecords(octets, golden.Type, contents), DecodeResult::ok) << golden.Type << golden.What;
        EXPECT_EQ(contents.ElementCount, 3U) << golden.Type << " " << golden.What;
        EXPECT_EQ(Encoded(contents), ToHex(octets.data(), octets.size())) << golden.Type << " " << golden.What;
    }
}

// The sanitizers watch for reads beyond the octets, which end where the allocation does.
TEST(ValueCodec, GoldenValuesCutAnywhereAreNoValues) {
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        const auto octets = Hex(golden.Hex);
        for (std::size_t size = 1; size < octets.size(); ++size) {
            const std::vector<std::uint8_t> cut(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(size));
            CPropertyContents contents(1024);
            const DecodeResult result = DecodeRecords(cut, golden.Type, contents);
            // The shorter value may be one too: optional members stand at the end, a date-time may be cut to nothing.
            if (result == DecodeResult::ok)
                EXPECT_EQ(Encoded(contents), ToHex(cut.data(), cut.size())) << golden.Type << " " << golden.What;
            else
                EXPECT_EQ(result, DecodeResult::malformed) << golden.Type << " " << golden.What << " " << size;
        }
    }
}

TEST(ValueCodec, GoldenValuesWithOctetsChangedDoNoHarm) {
    std::mt19937 random(20261121);
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        const auto octets = Hex(golden.Hex);
        for (int round = 0; round < 300; ++round) {
            auto changed = octets;
            for (int i = 0; i < 1 + round % 3; ++i)
                changed[random() % changed.size()] = static_cast<std::uint8_t>(random());
            CPropertyContents contents(512);
            if (DecodeRecords(changed, golden.Type, contents) == DecodeResult::ok) {
                EXPECT_NE(Encoded(contents), "not encoded")
                    << golden.Type << " " << ToHex(changed.data(), changed.size());
            }
            DecodeProperty(changed, OBJ_DEVICE, static_cast<BACSTAC_PROPERTY_ID>(random() % 520),
                           static_cast<int>(random() % 3) - 1, contents);
        }
    }
}

// Whatever fits is all or nothing of an element; the buffer's end is watched by the sanitizers.
TEST(ValueCodec, BuffersOfEverySizeHoldWholeValuesOrNone) {
    for (const GoldenValue& golden : GOLDEN_VALUES) {
        const auto octets = Hex(golden.Hex);
        bool fitted = false;
        for (unsigned size = 0; size <= 512; ++size) {
            CPropertyContents contents(size);
            const DecodeResult result = DecodeRecords(octets, golden.Type, contents);
            EXPECT_TRUE(result == DecodeResult::ok || (result == DecodeResult::noRoom && !fitted))
                << golden.Type << " " << golden.What << " " << size;
            fitted = result == DecodeResult::ok;
            EXPECT_EQ(contents.ElementCount, fitted ? 1U : 0U);
        }
        EXPECT_TRUE(fitted) << golden.Type << " " << golden.What;
    }
}

TEST(ValueCodec, PaddingIsAlwaysZero) {
    const auto octets = Hex("A47E030107");
    CPropertyContents contents(64);
    std::memset(contents.Buffer, 0xEE, 64);
    ASSERT_EQ(DecodeRecords(octets, TYPE_DATE, contents), DecodeResult::ok);
    EXPECT_EQ(ToHex(static_cast<const std::uint8_t*>(contents.Buffer), 16),
              "EA 07 00 00 03 00 00 00 01 00 00 00 07 00 00 00");
    const auto record = Hex("0E A47E030107 B40C050032 0F 1E 1901 1F");
    std::memset(contents.Buffer, 0xEE, 64);
    ASSERT_EQ(DecodeRecords(record, TYPE_LOG_RECORD, contents), DecodeResult::ok);
    EXPECT_EQ(ToHex(static_cast<const std::uint8_t*>(contents.Buffer) + 20, 40),
              "01 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(ValueCodec, AbsentDevicesAndIndexesHaveTheirDefaults) {
    const auto octets = Hex("0C00000001 1955");
    CPropertyContents contents(64);
    ASSERT_EQ(DecodeRecords(octets, TYPE_DEV_OBJ_PROP_REF, contents), DecodeResult::ok);
    const auto reference = First<BACSTAC_DEV_OBJ_PROP_REF>(contents);
    EXPECT_EQ(reference.ObjectId, (BACSTAC_OBJECT_ID{0, 1}));
    EXPECT_EQ(reference.Property, 85U);
    EXPECT_EQ(reference.ArrayIndex, 0xFFFFFFFFU);
    EXPECT_EQ(reference.DevicePresent, 0U);
    EXPECT_EQ(reference.DeviceId, (BACSTAC_OBJECT_ID{8, 0}));
}

// ---- properties

TEST(DecodeProperty, TakesTheTypeThatTheObjectTypeGives) {
    CPropertyContents contents;
    EXPECT_EQ(DecodeProperty(Hex("4442900000"), 0, PROP_PRESENT_VALUE, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_REAL);
    EXPECT_EQ(First<float>(contents), 72.0F);
    EXPECT_EQ(DecodeProperty(Hex("9101"), 3, PROP_PRESENT_VALUE, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_ENUMERATED);
    EXPECT_EQ(DecodeProperty(Hex("7505 004BC3BC68"), 0, PROP_OBJECT_NAME, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_STRING);
    EXPECT_STREQ(static_cast<const char*>(contents.Buffer), "K\xC3\xBCh");
}

TEST(DecodeProperty, TakesAnotherPrimitiveForWhatItIs) {
    CPropertyContents contents;
    // an unsigned where the standard has a real, and a null
    EXPECT_EQ(DecodeProperty(Hex("2148"), 0, PROP_PRESENT_VALUE, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_UNSIGNED);
    EXPECT_EQ(First<std::uint32_t>(contents), 72U);
    EXPECT_EQ(DecodeProperty(Hex("00"), 0, PROP_PRESENT_VALUE, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_NULL);
}

TEST(DecodeProperty, DecodesArraysTheirSizeAndTheirElements) {
    CPropertyContents contents;
    const auto list = Hex("C402000457 C400000001 C400000002"); // device 1111, analog-input 1 and 2
    EXPECT_EQ(DecodeProperty(list, OBJ_DEVICE, PROP_OBJECT_LIST, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_OBJECT_ID);
    EXPECT_EQ(contents.ElementCount, 3U);
    EXPECT_EQ(*static_cast<const BACSTAC_OBJECT_ID*>(FindElement(contents, 2)), (BACSTAC_OBJECT_ID{0, 2}));
    EXPECT_EQ(DecodeProperty(Hex("2103"), OBJ_DEVICE, PROP_OBJECT_LIST, 0, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_UNSIGNED);
    EXPECT_EQ(First<std::uint32_t>(contents), 3U);
    EXPECT_EQ(DecodeProperty(Hex("C400000002"), OBJ_DEVICE, PROP_OBJECT_LIST, 3, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_OBJECT_ID);
    EXPECT_EQ(contents.ElementCount, 1U);
    EXPECT_EQ(DecodeProperty({}, OBJ_DEVICE, PROP_OBJECT_LIST, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_OBJECT_ID);
    EXPECT_EQ(contents.ElementCount, 0U);
}

TEST(DecodeProperty, LaysStringsOneBehindTheOther) {
    CPropertyContents contents;
    const auto texts = Hex("7300 4F46 7100 7300 4F4E");
    EXPECT_EQ(DecodeProperty(texts, 13, 110, -1, contents), DecodeResult::ok); // state-text of a multi-state input
    EXPECT_EQ(contents.DataType, TYPE_STRING);
    ASSERT_EQ(contents.ElementCount, 3U);
    EXPECT_EQ(std::memcmp(contents.Buffer, "OF\0\0ON\0", 7), 0);
    EXPECT_STREQ(static_cast<const char*>(FindElement(contents, 2)), "ON");
    EXPECT_EQ(ElementsSize(contents), 7U);
    EXPECT_EQ(FindElement(contents, 3), nullptr);
}

TEST(DecodeProperty, DecodesPriorityArraysOfDifferingValues) {
    CPropertyContents contents;
    // null, null, 72, [0] a constructed value
    const auto array = Hex("00 00 4442900000 0E 2101 0F");
    EXPECT_EQ(DecodeProperty(array, 1, 87, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_ANY);
    ASSERT_EQ(contents.ElementCount, 4U);
    const auto at = [&](std::uint32_t i) {
        BACSTAC_ANY_VALUE value{};
        std::memcpy(&value, FindElement(contents, i), sizeof(value));
        return value;
    };
    EXPECT_EQ(at(0).DataType, TYPE_NULL);
    EXPECT_EQ(at(2).DataType, TYPE_REAL);
    EXPECT_EQ(First<float>(AnyValue(contents, at(2))), 72.0F);
    EXPECT_EQ(at(3).DataType, TYPE_RAW);
    EXPECT_EQ(AnyValue(contents, at(3)).DataType, -1);
    EXPECT_EQ(Encoded(contents), ToHex(array.data(), array.size()));
    // one element is what it is
    EXPECT_EQ(DecodeProperty(Hex("4442900000"), 1, 87, 8, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_REAL);
}

TEST(DecodeProperty, DecodesPrimitivesOfProprietaryProperties) {
    CPropertyContents contents;
    EXPECT_EQ(DecodeProperty(Hex("2105 2106"), VENDORS_TYPE, VENDORS_PROPERTY, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_UNSIGNED);
    EXPECT_EQ(contents.ElementCount, 2U);
    EXPECT_EQ(DecodeProperty(Hex("2105 4442900000"), VENDORS_TYPE, VENDORS_PROPERTY, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_ANY);
    EXPECT_EQ(contents.ElementCount, 2U);
    EXPECT_EQ(DecodeProperty({}, VENDORS_TYPE, VENDORS_PROPERTY, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.ElementCount, 0U);
}

TEST(DecodeProperty, KeepsConstructedProprietaryValuesRaw) {
    CPropertyContents contents;
    const auto octets = Hex("0E 2105 0F 1903");
    EXPECT_EQ(DecodeProperty(octets, VENDORS_TYPE, VENDORS_PROPERTY, -1, contents), DecodeResult::raw);
    EXPECT_EQ(contents.DataType, TYPE_RAW);
    EXPECT_LT(contents.DataType, 0);
    EXPECT_EQ(contents.ElementCount, octets.size());
    EXPECT_EQ(Encoded(contents), ToHex(octets.data(), octets.size()));
}

TEST(DecodeProperty, RefusesWhatIsNoTaggedValue) {
    CPropertyContents contents;
    for (const char* hex : {"FF", "0E", "0F", "06", "75 FF FFFFFFFF 00", "2109 0F"}) {
        EXPECT_EQ(DecodeProperty(Hex(hex), VENDORS_TYPE, VENDORS_PROPERTY, -1, contents), DecodeResult::malformed)
            << hex;
        EXPECT_EQ(contents.DataType, TYPE_NONE) << hex;
        EXPECT_EQ(contents.ElementCount, 0U) << hex;
    }
    const std::vector<std::uint8_t> deep(100000, 0x0E);
    EXPECT_EQ(DecodeProperty(deep, VENDORS_TYPE, VENDORS_PROPERTY, -1, contents), DecodeResult::malformed);
}

TEST(DecodeProperty, TellsWhenTheBufferIsTooSmall) {
    CPropertyContents contents(2);
    EXPECT_EQ(DecodeProperty(Hex("2148"), OBJ_DEVICE, 62, -1, contents), DecodeResult::noRoom);
    EXPECT_EQ(contents.DataType, TYPE_NONE);
    EXPECT_EQ(contents.ElementCount, 0U);
    CPropertyContents objects(20);
    EXPECT_EQ(DecodeProperty(Hex("C402000457 C400000001 C400000002"), OBJ_DEVICE, PROP_OBJECT_LIST, -1, objects),
              DecodeResult::noRoom);
    EXPECT_EQ(objects.ElementCount, 2U);
}

TEST(DecodeProperty, AnAbsentSetpointReferenceIsOneValue) {
    CPropertyContents contents;
    EXPECT_EQ(DecodeProperty({}, 12, 109, -1, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_SETPOINT_REF);
    ASSERT_EQ(contents.ElementCount, 1U);
    EXPECT_EQ(First<BACSTAC_SETPOINT_REF>(contents).Present, 0U);
    EXPECT_EQ(Encoded(contents), "");
}

// ---- encoding what somebody filled in

TEST(EncodeContents, RefusesReferencesOutOfTheBuffer) {
    CPropertyContents contents(64);
    contents.DataType = TYPE_DAILY_SCHEDULE;
    contents.ElementCount = 1;
    std::memset(contents.Buffer, 0, 64);
    BACSTAC_DAILY_SCHEDULE day{{1, 60}};
    std::memcpy(contents.Buffer, &day, sizeof(day));
    EXPECT_EQ(Encoded(contents), "not encoded");
    day.TimeValues = {0x10000000, 16};
    std::memcpy(contents.Buffer, &day, sizeof(day));
    EXPECT_EQ(Encoded(contents), "not encoded");
    contents.DataType = TYPE_UNSIGNED;
    contents.ElementCount = 17; // of 4 bytes in 64
    EXPECT_EQ(Encoded(contents), "not encoded");
    contents.DataType = TYPE_STRING; // without its end
    contents.ElementCount = 1;
    std::memset(contents.Buffer, 'a', 64);
    EXPECT_EQ(Encoded(contents), "not encoded");
}

TEST(EncodeContents, RefusesWhatHoldsNoValue) {
    CPropertyContents contents(64);
    EXPECT_EQ(Encoded(contents), "not encoded");
    contents.DataType = 999;
    contents.ElementCount = 1;
    EXPECT_EQ(Encoded(contents), "not encoded");
}

TEST(EncodeContents, WritesRawStringsAsTheyCame) {
    CPropertyContents contents(64);
    contents.DataType = TYPE_RAW_STRING;
    contents.ElementCount = 1;
    const auto raw = Hex("03000000 054BFC00"); // ISO 8859-1 "K" and a u with dots
    std::memcpy(contents.Buffer, raw.data(), raw.size());
    EXPECT_EQ(Encoded(contents), "73 05 4B FC");
}
