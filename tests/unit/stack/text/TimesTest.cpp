// Times, bits and narrow text.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/stack/text/Printing.h"

namespace {

constexpr std::uint8_t ANY = 255;

BACSTAC_DATE_TIME At(BACSTAC_DATE date, std::uint8_t hour = 0, std::uint8_t minute = 0, std::uint8_t second = 0,
                     std::uint8_t hundredths = 0) {
    return {date, {hour, minute, second, hundredths}};
}

std::string Text(const BACSTAC_DATE_TIME& time) {
    char buffer[50];
    EXPECT_EQ(ToText(&time, buffer), buffer);
    return buffer;
}

} // namespace

TEST(Compare, OrdersByTheMostSignificantField) {
    const BACSTAC_DATE_TIME base = At(Date(2026, 6, 15), 12, 30, 30, 50);
    EXPECT_EQ(Compare(base, base), COMPARE_EQUAL);
    const BACSTAC_DATE_TIME later[] = {
        At(Date(2027, 1, 1)),
        At(Date(2026, 7, 1)),
        At(Date(2026, 6, 16)),
        At(Date(2026, 6, 15), 13),
        At(Date(2026, 6, 15), 12, 31),
        At(Date(2026, 6, 15), 12, 30, 31),
        At(Date(2026, 6, 15), 12, 30, 30, 51),
    };
    for (const BACSTAC_DATE_TIME& time : later) {
        EXPECT_EQ(Compare(base, time), COMPARE_LESS) << Text(time);
        EXPECT_EQ(Compare(time, base), COMPARE_GREATER) << Text(time);
    }
}

TEST(Compare, IgnoresTheWeekday) {
    EXPECT_EQ(Compare(At(Date(2026, 6, 15, 1)), At(Date(2026, 6, 15, 5))), COMPARE_EQUAL);
}

TEST(Compare, TakesUnspecifiedFieldsForEqual) {
    const BACSTAC_DATE_TIME base = At(Date(2026, 6, 15), 12, 30, 30, 50);
    EXPECT_EQ(Compare(base, At(Date(0xFFFF, 0, 255), ANY, ANY, ANY, ANY)), COMPARE_EQUAL);
    EXPECT_EQ(Compare(At(Date(0xFFFF, 0, 255), ANY, ANY, ANY, ANY), base), COMPARE_EQUAL);
    EXPECT_EQ(Compare(base, At(Date(0xFFFF, 6, 15), 12, 30, 30, 51)), COMPARE_LESS);
    EXPECT_EQ(Compare(base, At(Date(2026, 0, 14), 12, 30, 30, 50)), COMPARE_GREATER);
    EXPECT_EQ(Compare(base, At(Date(2026, 6, 15), 12, ANY, 29, 50)), COMPARE_GREATER);
}

TEST(Compare, TakesEveryDayFrom255OnForUnspecified) {
    const BACSTAC_DATE_TIME base = At(Date(2026, 6, 15));
    for (const std::uint32_t day : {255U, 256U, 0xFFFFFFFFU})
        EXPECT_EQ(Compare(base, At(Date(2026, 6, day))), COMPARE_EQUAL);
    EXPECT_EQ(Compare(base, At(Date(2026, 6, 32))), COMPARE_LESS);
}

TEST(ToText, ShowsAStarForEveryUnspecifiedField) {
    EXPECT_EQ(Text(At(Date(2026, 1, 2, 5), 3, 4, 5, 6)), "02/01/2026 03:04:05.06");
    EXPECT_EQ(Text(At(Date(0xFFFF, 0, 255, 3), ANY, ANY, ANY, ANY)), "*/*/* *:*:*.*");
    EXPECT_EQ(Text(At(Date(0xFFFF, 0, 0xFFFFFFFFU), 1, ANY, 2, ANY)), "*/*/* 01:*:02.*");
}

TEST(ToText, OfNothingIsEmpty) {
    char buffer[50] = "before";
    EXPECT_STREQ(ToText(nullptr, buffer), "");
}

TEST(SystemTime, HasTheWeekdayOfItsDate) {
    SYSTEM_TIME time{};
    BACstacTimeToSystemTime(At(Date(2026, 11, 21, 2), 9, 8, 7, 65), time); // a Saturday, whatever the record says
    EXPECT_EQ(time.Year, 2026);
    EXPECT_EQ(time.Month, 11);
    EXPECT_EQ(time.Day, 21);
    EXPECT_EQ(time.DayOfWeek, 6);
    EXPECT_EQ(time.Hour, 9);
    EXPECT_EQ(time.Minute, 8);
    EXPECT_EQ(time.Second, 7);
    EXPECT_EQ(time.Milliseconds, 650);
    BACstacTimeToSystemTime(At(Date(2026, 11, 22)), time);
    EXPECT_EQ(time.DayOfWeek, 0) << "Sunday";
}

TEST(SystemTime, HasZeroForWhatIsUnspecified) {
    SYSTEM_TIME time{};
    BACstacTimeToSystemTime(At(Date(0xFFFF, 13, 32, 7), ANY, ANY, ANY, ANY), time);
    EXPECT_EQ(time.Year, 0);
    EXPECT_EQ(time.Month, 0);
    EXPECT_EQ(time.Day, 0);
    EXPECT_EQ(time.DayOfWeek, 0);
    EXPECT_EQ(time.Hour, 0);
    EXPECT_EQ(time.Milliseconds, 0);
}

TEST(SystemTime, TurnsBackWithTheWeekdayComputed) {
    BACSTAC_DATE_TIME time{};
    SystemTimeToBACstacTime({2026, 11, 3, 22, 23, 59, 58, 999}, time);
    EXPECT_EQ(time.Date.Year, 2026);
    EXPECT_EQ(time.Date.Reserved, 0);
    EXPECT_EQ(time.Date.Month, 11U);
    EXPECT_EQ(time.Date.Day, 22U);
    EXPECT_EQ(time.Date.Weekday, 7U);
    EXPECT_EQ(Text(time), "22/11/2026 23:59:58.99");
    SystemTimeToBACstacTime({2024, 2, 0, 29, 0, 0, 0, 0}, time);
    EXPECT_EQ(time.Date.Weekday, 4U);
}

TEST(SystemTime, OfNoDateIsUnspecified) {
    BACSTAC_DATE_TIME time{};
    SystemTimeToBACstacTime({}, time);
    EXPECT_EQ(Text(time), "*/*/* 00:00:00.00");
    EXPECT_EQ(time.Date.Weekday, BACSTAC_ANY_WEEKDAY);
    SystemTimeToBACstacTime({2026, 257, 0, 300, 400, 500, 600, 9000}, time);
    EXPECT_EQ(time.Date.Weekday, BACSTAC_ANY_WEEKDAY);
    EXPECT_EQ(time.Time.Hour, 255);
}

TEST(BitStrings, AreReadUpToTheirEnd) {
    const BACSTAC_BIT_STRING value = Bits({true, false, true});
    EXPECT_EQ(value.BitCount, 3U);
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(value, 0));
    EXPECT_FALSE(CBacGeneral::TestBitStringBit(value, 1));
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(value, 2));
    EXPECT_FALSE(CBacGeneral::TestBitStringBit(value, 3));
    BACSTAC_BIT_STRING damaged{0xFFFFFFFFU, {}};
    std::memset(damaged.Bits, 0xFF, sizeof damaged.Bits);
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(damaged, 95));
    EXPECT_FALSE(CBacGeneral::TestBitStringBit(damaged, 96));
    EXPECT_FALSE(CBacGeneral::TestBitStringBit(damaged, 0xFFFFFFFFU));
}

TEST(BitStrings, GrowByZerosUpTo96Bits) {
    BACSTAC_BIT_STRING value{1, {0xFF}}; // rubbish beyond the end
    CBacGeneral::SetBitStringBit(value, 10, true);
    EXPECT_EQ(value.BitCount, 11U);
    EXPECT_EQ(value.Bits[0], 0x01);
    EXPECT_EQ(value.Bits[1], 0x04);
    CBacGeneral::SetBitStringBit(value, 0, false);
    EXPECT_EQ(value.Bits[0], 0x00);
    CBacGeneral::SetBitStringBit(value, 95, true);
    EXPECT_EQ(value.BitCount, 96U);
    const BACSTAC_BIT_STRING before = value;
    CBacGeneral::SetBitStringBit(value, 96, true);
    CBacGeneral::SetBitStringBit(value, 0xFFFFFFFFU, true);
    EXPECT_EQ(value, before);
}

TEST(InitContents, DescribesABufferWithoutAValue) {
    const char data[8] = {};
    BACSTAC_PROPERTY_CONTENTS contents{4, nullptr, 1, 1};
    CBacGeneral::InitContentsToBuf(&contents, data, sizeof data);
    EXPECT_EQ(contents.DataType, -1);
    EXPECT_EQ(contents.Buffer, data);
    EXPECT_EQ(contents.BufferSize, 8U);
    EXPECT_EQ(contents.ElementCount, 0U);
}

TEST(NarrowText, PassesUtf8AndTakesAllElseForWindowsText) {
    EXPECT_EQ(ansi_to_utf8(""), "");
    EXPECT_EQ(ansi_to_utf8("plain"), "plain");
    EXPECT_EQ(ansi_to_utf8("Zone \xC3\xA9"), "Zone \xC3\xA9");
    EXPECT_EQ(ansi_to_utf8("Zone \xE9"), "Zone \xC3\xA9");
    EXPECT_EQ(ansi_to_utf8("\x80 \x9F"), "\xE2\x82\xAC \xC5\xB8");
    EXPECT_EQ(ansi_to_utf8("\xC3"), "\xC3\x83");
}
