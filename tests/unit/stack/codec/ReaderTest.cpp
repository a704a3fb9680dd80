#include "platform/stack/codec/Reader.h"

#include "platform/stack/codec/Writer.h"
#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <limits>

using namespace bacnet;

TEST(Reader, ReadsPrimitives) {
    // null, boolean, unsigned 256, signed -129, real 72, double 72, enumerated 0, object (3,15), time, [2] unsigned 7
    const auto frame = Hex("00 11 22 0100 32FF7F 4442900000 5508 4052000000000000 9100 C400C0000F B411232D11 2907");
    Reader reader(frame);
    bool boolean = false;
    std::uint32_t number = 0;
    std::int32_t negative = 0;
    float real = 0;
    double wide = 0;
    BACSTAC_OBJECT_ID id{};
    BACSTAC_TIME time{};
    EXPECT_TRUE(reader.Null());
    EXPECT_TRUE(reader.Boolean(boolean));
    EXPECT_TRUE(boolean);
    EXPECT_TRUE(reader.Unsigned(number));
    EXPECT_EQ(number, 256U);
    EXPECT_TRUE(reader.Signed(negative));
    EXPECT_EQ(negative, -129);
    EXPECT_TRUE(reader.Real(real));
    EXPECT_EQ(real, 72.0F);
    EXPECT_TRUE(reader.Double(wide));
    EXPECT_EQ(wide, 72.0);
    EXPECT_TRUE(reader.Enumerated(number));
    EXPECT_EQ(number, 0U);
    EXPECT_TRUE(reader.ObjectId(id));
    EXPECT_EQ(id, (BACSTAC_OBJECT_ID{3, 15}));
    EXPECT_TRUE(reader.Time(time));
    EXPECT_EQ(time.Hundredths, 17);
    EXPECT_TRUE(reader.Unsigned(number, 2));
    EXPECT_EQ(number, 7U);
    EXPECT_TRUE(reader.AtEnd());
    EXPECT_TRUE(reader.Ok());
}

TEST(Reader, FailsForGoodAtTheFirstFault) {
    const auto frame = Hex("2105 9101 2107");
    Reader reader(frame);
    std::uint32_t number = 0;
    EXPECT_TRUE(reader.Unsigned(number));
    EXPECT_FALSE(reader.Unsigned(number)); // an enumerated stands there
    EXPECT_EQ(reader.Error(), DecodeError::unexpected);
    EXPECT_EQ(reader.ErrorOffset(), 2U);
    EXPECT_EQ(number, 5U);
    EXPECT_FALSE(reader.Enumerated(number));
    Tag tag;
    EXPECT_FALSE(reader.PeekTag(tag));
}

TEST(Reader, GivesTheNearestNumberForWideOnes) {
    std::uint32_t number = 0;
    std::uint64_t wide = 0;
    std::int32_t negative = 0;
    const auto big = Hex("2508 0000000100000000");
    EXPECT_TRUE(Reader(big).Unsigned(number));
    EXPECT_EQ(number, 0xFFFFFFFFU);
    EXPECT_TRUE(Reader(big).Unsigned64(wide));
    EXPECT_EQ(wide, 0x100000000U);
    const auto low = Hex("3505 FF00000000");
    EXPECT_TRUE(Reader(low).Signed(negative));
    EXPECT_EQ(negative, std::numeric_limits<std::int32_t>::min());
    const auto zeros = Hex("2504 00000009"); // a long form of length, leading zeros
    EXPECT_TRUE(Reader(zeros).Unsigned(number));
    EXPECT_EQ(number, 9U);
    const auto nine = Hex("2509 000000000000000001");
    Reader reader(nine);
    EXPECT_FALSE(reader.Unsigned(number));
    EXPECT_EQ(reader.Error(), DecodeError::badLength);
    const auto none = Hex("20");
    EXPECT_FALSE(Reader(none).Unsigned(number));
}

TEST(Reader, ReadsSignedOfEveryLength) {
    const std::pair<const char*, std::int32_t> cases[] = {
        {"3180", -128}, {"328000", -32768}, {"33800000", -8388608}, {"3480000000", std::numeric_limits<int>::min()},
        {"317F", 127},  {"327FFF", 32767},  {"337FFFFF", 8388607},  {"347FFFFFFF", std::numeric_limits<int>::max()}};
    for (const auto& [hex, expected] : cases) {
        const auto frame = Hex(hex);
        std::int32_t value = 0;
        EXPECT_TRUE(Reader(frame).Signed(value)) << hex;
        EXPECT_EQ(value, expected) << hex;
    }
}

TEST(Reader, RefusesLengthsBeyondTheEnd) {
    for (const char* hex : {"65 FF FFFFFFFF 00", "65 FF 80000000", "65 FE FFFF 00", "65 FD 00", "65 FF 000000",
                            "65 FE 00", "65", "F9", "0D FF FFFFFFFF", "24 00 00 00"}) {
        const auto frame = Hex(hex);
        Reader reader(frame);
        Tag tag;
        EXPECT_FALSE(reader.ReadTag(tag)) << hex;
        EXPECT_EQ(reader.Error(), DecodeError::truncated) << hex;
        EXPECT_EQ(reader.Offset(), 0U);
    }
}

TEST(Reader, RefusesWhatIsNoTag) {
    for (const char* hex : {"06", "07", "F9 FF 00", "F9 03 00"}) {
        const auto frame = Hex(hex);
        Reader reader(frame);
        Tag tag;
        EXPECT_FALSE(reader.ReadTag(tag)) << hex;
        EXPECT_EQ(reader.Error(), DecodeError::badTag) << hex;
    }
    const auto frame = Hex("12");
    Reader reader(frame);
    Tag tag;
    EXPECT_FALSE(reader.ReadTag(tag));
    EXPECT_EQ(reader.Error(), DecodeError::badLength);
}

TEST(Reader, SkipsWholeConstructedValues) {
    // [0]{ unsigned 1, [1]{ [2] 5 octets }, [30]{} } then boolean
    const auto frame = Hex("0E 2101 1E 2D050102030405 1F FE1E FF1E 0F 11");
    Reader reader(frame);
    std::span<const std::uint8_t> octets;
    EXPECT_TRUE(reader.Skip(&octets));
    EXPECT_EQ(octets.size(), frame.size() - 1);
    bool value = false;
    EXPECT_TRUE(reader.Boolean(value));
    EXPECT_TRUE(reader.AtEnd());

    Reader inside(frame);
    EXPECT_TRUE(inside.Enclosed(0, octets));
    EXPECT_EQ(octets.size(), frame.size() - 3);
    EXPECT_EQ(octets[0], 0x21);

    const auto wide = Hex("FE1E 2107 FF1E");
    Reader outer(wide);
    EXPECT_TRUE(outer.Enclosed(30, octets));
    EXPECT_EQ(ToHex(octets.data(), octets.size()), "21 07");
    EXPECT_TRUE(outer.AtEnd());
}

TEST(Reader, RefusesUnbalancedBrackets) {
    for (const char* hex : {"0E 2101 1F", "0F", "0E 1E 0F 1F"}) {
        const auto frame = Hex(hex);
        Reader reader(frame);
        EXPECT_FALSE(reader.Skip()) << hex;
        EXPECT_EQ(reader.Error(), DecodeError::unbalanced) << hex;
    }
    const auto open = Hex("0E 2101");
    Reader reader(open);
    std::span<const std::uint8_t> octets;
    EXPECT_FALSE(reader.Enclosed(0, octets));
    EXPECT_EQ(reader.Error(), DecodeError::truncated);
}

TEST(Reader, RefusesNestingWithoutEnd) {
    std::vector<std::uint8_t> frame(MAX_NESTING, 0x0E);
    frame.insert(frame.end(), MAX_NESTING, 0x0F);
    Reader deep(frame);
    EXPECT_TRUE(deep.Skip());

    const std::vector<std::uint8_t> endless(1000000, 0x0E);
    Reader reader(endless);
    EXPECT_FALSE(reader.Skip());
    EXPECT_EQ(reader.Error(), DecodeError::tooDeep);
    EXPECT_EQ(reader.ErrorOffset(), MAX_NESTING);
}

TEST(Reader, ReadsBitStrings) {
    BACSTAC_BIT_STRING bits{};
    const auto frame = Hex("8203A8");
    EXPECT_TRUE(Reader(frame).BitString(bits));
    EXPECT_EQ(bits.BitCount, 5U);
    EXPECT_EQ(bits.Bits[0], 0x15);

    const auto rubbish = Hex("8203AF"); // unused bits that are set do not count
    EXPECT_TRUE(Reader(rubbish).BitString(bits));
    EXPECT_EQ(bits.Bits[0], 0x15);

    const auto empty = Hex("8100");
    EXPECT_TRUE(Reader(empty).BitString(bits));
    EXPECT_EQ(bits.BitCount, 0U);

    // 15 octets of bits: the first 96 bits are kept
    const auto longOne = Hex("8510 00 FFFFFFFFFFFFFFFFFFFFFFFFFFFFFF");
    EXPECT_TRUE(Reader(longOne).BitString(bits));
    EXPECT_EQ(bits.BitCount, 96U);
    EXPECT_EQ(bits.Bits[11], 0xFF);

    for (const char* hex : {"80", "8101", "8208FF"}) {
        const auto bad = Hex(hex);
        Reader reader(bad);
        EXPECT_FALSE(reader.BitString(bits)) << hex;
        EXPECT_EQ(reader.Error(), DecodeError::badLength) << hex;
    }
}

TEST(Reader, ReadsDatesWithWildcards) {
    BACSTAC_DATE date{};
    const auto frame = Hex("A4FFFFFFFF");
    EXPECT_TRUE(Reader(frame).Date(date));
    EXPECT_EQ(date.Year, BACSTAC_ANY_YEAR);
    EXPECT_EQ(date.Month, BACSTAC_ANY_MONTH);
    EXPECT_EQ(date.Day, BACSTAC_ANY_DAY);
    EXPECT_EQ(date.Weekday, BACSTAC_ANY_WEEKDAY);
    const auto odd = Hex("0C 7E 0E 20 07"); // [0] 2026, even months, last day, Sunday
    EXPECT_TRUE(Reader(odd).Date(date, 0));
    EXPECT_EQ(date.Year, 2026);
    EXPECT_EQ(date.Month, 14U);
    EXPECT_EQ(date.Day, 32U);
    EXPECT_EQ(date.Weekday, 7U);
}

TEST(Reader, TakesWrongTagsForUnexpected) {
    const auto frame = Hex("1901");
    Reader reader(frame);
    EXPECT_TRUE(reader.IsContext(1));
    EXPECT_FALSE(reader.IsContext(0));
    EXPECT_FALSE(reader.IsOpening(1));
    EXPECT_FALSE(reader.IsApplication(1));
    std::uint32_t number = 0;
    EXPECT_FALSE(reader.Unsigned(number));
    EXPECT_EQ(reader.Error(), DecodeError::unexpected);
    EXPECT_EQ(reader.ErrorOffset(), 0U);
}

TEST(Reader, EveryCutOfAFrameEndsWithAnError) {
    const auto frame = Hex("0E 22 0100 1E 3507 01020304050607 1F 2C C2053333 0F");
    for (std::size_t size = 0; size < frame.size(); ++size) {
        const std::vector<std::uint8_t> cut(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(size));
        Reader reader(cut);
        EXPECT_FALSE(reader.Skip()) << size;
        EXPECT_EQ(reader.Error(), DecodeError::truncated) << size;
        EXPECT_LE(reader.ErrorOffset(), size);
    }
}

TEST(Reader, ReadsUntaggedOctets) {
    const auto frame = Hex("01 0203 04050607 08");
    Reader reader(frame);
    std::uint8_t one = 0;
    std::uint16_t two = 0;
    std::uint32_t four = 0;
    EXPECT_TRUE(reader.U8(one));
    EXPECT_TRUE(reader.U16(two));
    EXPECT_TRUE(reader.U32(four));
    EXPECT_EQ(one, 1);
    EXPECT_EQ(two, 0x0203);
    EXPECT_EQ(four, 0x04050607U);
    EXPECT_FALSE(reader.U16(two));
    EXPECT_EQ(reader.Error(), DecodeError::truncated);
    EXPECT_EQ(reader.ErrorOffset(), 7U);
}
