#include "platform/stack/codec/Writer.h"

#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>

using namespace bacnet;

namespace {

std::string Written(const std::function<void(Writer&)>& write) {
    std::vector<std::uint8_t> buffer(70000);
    Writer writer(buffer);
    write(writer);
    EXPECT_FALSE(writer.Overflow());
    return ToHex(buffer.data(), writer.Size());
}

} // namespace

TEST(Writer, WritesPrimitivesWithApplicationTags) {
    EXPECT_EQ(Written([](Writer& w) { w.Null(); }), "00");
    EXPECT_EQ(Written([](Writer& w) { w.Boolean(true); }), "11");
    EXPECT_EQ(Written([](Writer& w) { w.Boolean(false); }), "10");
    EXPECT_EQ(Written([](Writer& w) { w.Unsigned(0); }), "21 00");
    EXPECT_EQ(Written([](Writer& w) { w.Unsigned(72); }), "21 48");
    EXPECT_EQ(Written([](Writer& w) { w.Unsigned(256); }), "22 01 00");
    EXPECT_EQ(Written([](Writer& w) { w.Unsigned(65536); }), "23 01 00 00");
    EXPECT_EQ(Written([](Writer& w) { w.Unsigned(0xFFFFFFFF); }), "24 FF FF FF FF");
    EXPECT_EQ(Written([](Writer& w) { w.Unsigned(0x100000000); }), "25 05 01 00 00 00 00");
    EXPECT_EQ(Written([](Writer& w) { w.Signed(72); }), "31 48");
    EXPECT_EQ(Written([](Writer& w) { w.Signed(-1); }), "31 FF");
    EXPECT_EQ(Written([](Writer& w) { w.Signed(128); }), "32 00 80");
    EXPECT_EQ(Written([](Writer& w) { w.Signed(-128); }), "31 80");
    EXPECT_EQ(Written([](Writer& w) { w.Signed(-129); }), "32 FF 7F");
    EXPECT_EQ(Written([](Writer& w) { w.Signed(std::numeric_limits<std::int32_t>::min()); }), "34 80 00 00 00");
    EXPECT_EQ(Written([](Writer& w) { w.Real(72.0F); }), "44 42 90 00 00");
    EXPECT_EQ(Written([](Writer& w) { w.Double(72.0); }), "55 08 40 52 00 00 00 00 00 00");
    EXPECT_EQ(Written([](Writer& w) { w.Enumerated(0); }), "91 00");
    EXPECT_EQ(Written([](Writer& w) { w.ObjectId({3, 15}); }), "C4 00 C0 00 0F");
    EXPECT_EQ(Written([](Writer& w) { w.Time({17, 35, 45, 17}); }), "B4 11 23 2D 11");
    // "This is a BACnet string!" in UTF-8
    EXPECT_EQ(Written([](Writer& w) { w.CharacterString("This is a BACnet string!"); }),
              "75 19 00 54 68 69 73 20 69 73 20 61 20 42 41 43 6E 65 74 20 73 74 72 69 6E 67 21");
    const std::array<std::uint8_t, 3> octets{0x12, 0x34, 0xFF};
    EXPECT_EQ(Written([&](Writer& w) { w.OctetString(octets); }), "63 12 34 FF");
}

TEST(Writer, WritesPrimitivesWithContextTags) {
    EXPECT_EQ(Written([](Writer& w) { w.Null(3); }), "38");
    EXPECT_EQ(Written([](Writer& w) { w.Boolean(false, 6); }), "69 00");
    EXPECT_EQ(Written([](Writer& w) { w.Unsigned(256, 0); }), "0A 01 00");
    EXPECT_EQ(Written([](Writer& w) { w.Signed(-72, 5); }), "59 B8");
    EXPECT_EQ(Written([](Writer& w) { w.Real(-33.3F, 0); }), "0C C2 05 33 33");
    EXPECT_EQ(Written([](Writer& w) { w.Double(-33.3, 1); }), "1D 08 C0 40 A6 66 66 66 66 66");
    EXPECT_EQ(Written([](Writer& w) { w.Enumerated(0, 9); }), "99 00");
    EXPECT_EQ(Written([](Writer& w) { w.Enumerated(1, 33); }), "F9 21 01"); // tag number in an octet of its own
}

TEST(Writer, WritesDatesWithWildcards) {
    EXPECT_EQ(Written([](Writer& w) { w.Date({1991, 0, 1, 24, 4}); }), "A4 5B 01 18 04");
    EXPECT_EQ(Written([](Writer& w) {
                  w.Date({BACSTAC_ANY_YEAR, 0, BACSTAC_ANY_MONTH, BACSTAC_ANY_DAY, BACSTAC_ANY_WEEKDAY});
              }),
              "A4 FF FF FF FF");
    EXPECT_EQ(Written([](Writer& w) { w.Date({2000, 0, 13, 0xFFFFFFFF, 7}); }), "A4 64 0D FF 07");
}

TEST(Writer, HoldsYearsToTheRangeOfTheEncoding) {
    EXPECT_EQ(Written([](Writer& w) { w.Date({0, 0, 1, 1, 0}); }), "A4 00 01 01 FF");
    EXPECT_EQ(Written([](Writer& w) { w.Date({12, 0, 1, 1, 0}); }), "A4 00 01 01 FF");
    EXPECT_EQ(Written([](Writer& w) { w.Date({1900, 0, 1, 1, 0}); }), "A4 00 01 01 FF");
    EXPECT_EQ(Written([](Writer& w) { w.Date({2154, 0, 1, 1, 0}); }), "A4 FE 01 01 FF");
    EXPECT_EQ(Written([](Writer& w) { w.Date({2155, 0, 1, 1, 0}); }), "A4 FE 01 01 FF");
}

TEST(Writer, WritesBitStringsMostSignificantFirst) {
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = 5;
    bits.Bits[0] = 0x15; // bits 0, 2 and 4
    EXPECT_EQ(Written([&](Writer& w) { w.BitString(bits); }), "82 03 A8");
    bits.Bits[0] = 0xF5; // what lies beyond the count is not written
    EXPECT_EQ(Written([&](Writer& w) { w.BitString(bits); }), "82 03 A8");
    bits = {};
    EXPECT_EQ(Written([&](Writer& w) { w.BitString(bits); }), "81 00");
}

TEST(Writer, WritesAllFormsOfLength) {
    for (const std::size_t size : {4U, 5U, 253U, 254U, 65535U, 65536U}) {
        const std::vector<std::uint8_t> octets(size, 0x55);
        const std::string text = Written([&](Writer& w) { w.OctetString(octets); });
        std::string header;
        if (size == 4)
            header = "64";
        else if (size == 5)
            header = "65 05";
        else if (size == 253)
            header = "65 FD";
        else if (size == 254)
            header = "65 FE 00 FE";
        else if (size == 65535)
            header = "65 FE FF FF";
        else
            header = "65 FF 00 01 00 00";
        EXPECT_EQ(text.substr(0, header.size()), header);
        EXPECT_EQ(text.size(), header.size() + 3 * size);
    }
}

TEST(Writer, WritesNothingBeyondItsBufferAndCountsWhatIsNeeded) {
    std::array<std::uint8_t, 8> memory;
    memory.fill(0xEE);
    Writer writer({memory.data(), 6});
    writer.Unsigned(1);   // 2
    writer.Real(1.0F);    // 5 more: do not fit
    writer.Boolean(true); // would fit, but must not be written behind the gap
    EXPECT_TRUE(writer.Overflow());
    EXPECT_EQ(writer.Size(), 8U);
    EXPECT_EQ(writer.Room(), 0U);
    EXPECT_TRUE(writer.Written().empty());
    EXPECT_EQ(memory[6], 0xEE);
    EXPECT_EQ(memory[7], 0xEE);
    writer.Rewind(2);
    EXPECT_FALSE(writer.Overflow());
    writer.Boolean(true);
    EXPECT_EQ(ToHex(writer.Written().data(), writer.Written().size()), "21 01 11");
}

TEST(Writer, PatchesEarlierOctets) {
    std::array<std::uint8_t, 4> memory{};
    Writer writer(memory);
    writer.U16(0);
    writer.U8(7);
    writer.PatchU16(0, 0x1234);
    EXPECT_EQ(ToHex(memory.data(), writer.Size()), "12 34 07");
}
