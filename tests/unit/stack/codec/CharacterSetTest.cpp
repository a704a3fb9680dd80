#include "platform/stack/codec/CharacterSet.h"

#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace bacnet;

namespace {

std::string Text(const char* hex) {
    return DecodeText(Hex(hex));
}

} // namespace

TEST(CharacterSet, DecodesEverySetToUtf8) {
    EXPECT_EQ(Text("00 4B C3BC 68 6C"), "K\xC3\xBChl");             // UTF-8
    EXPECT_EQ(Text("05 4B FC 68 6C"), "K\xC3\xBChl");               // ISO 8859-1
    EXPECT_EQ(Text("04 004B 00FC 0068 006C"), "K\xC3\xBChl");       // UCS-2
    EXPECT_EQ(Text("03 0000004B 000000FC 00000068"), "K\xC3\xBCh"); // UCS-4
    EXPECT_EQ(Text("01 04E4 4B FC 80"), "K\xC3\xBC\xE2\x82\xAC");   // code page 1252: u with dots, euro sign
    EXPECT_EQ(Text("01 0352 4B 81"), "K\xC3\xBC");                  // code page 850
    EXPECT_EQ(Text("02 4A 49 53"), "JIS");
    EXPECT_EQ(Text("04 D83D DE00"), "\xF0\x9F\x98\x80"); // a pair of surrogates
    EXPECT_EQ(Text("03 0001F600"), "\xF0\x9F\x98\x80");
}

TEST(CharacterSet, MakesTheBestOfAWrongSet) {
    EXPECT_EQ(Text("00 4B FC 68 6C"), "K\xC3\xBChl"); // says UTF-8, is Windows-1252
    EXPECT_EQ(Text("00 80"), "\xE2\x82\xAC");
    EXPECT_EQ(Text("01 03A4 41 83 5C 42"), "A?\\B"); // code page 932 is not known here
    EXPECT_EQ(Text("02 1B24 41"), "?$A");
    EXPECT_EQ(Text("09 4B C3BC"), "K\xC3\xBC"); // no such set yet
    EXPECT_EQ(Text("04 004B 00"), "K");         // half a character
    EXPECT_EQ(Text("04 D800 0041"), "\xEF\xBF\xBD"
                                    "A");
    EXPECT_EQ(Text("03 00110000"), "\xEF\xBF\xBD");
    EXPECT_EQ(Text("01 04"), "");
    EXPECT_EQ(Text("00"), "");
    EXPECT_EQ(Text(""), "");
}

TEST(CharacterSet, EndsAtTheFirstNul) {
    EXPECT_EQ(Text("00 4B 00 FF FE"), "K");
    EXPECT_EQ(Text("04 004B 0000 0041"), "K");
    EXPECT_EQ(Text("05 4B 00 41"), "K");
}

TEST(CharacterSet, CutsAtACharacter) {
    const auto octets = Hex("00 4B C3BC 68 6C");
    char text[8];
    for (std::size_t capacity = 0; capacity <= sizeof(text); ++capacity) {
        std::memset(text, '#', sizeof(text));
        EXPECT_EQ(DecodeText(octets, text, capacity), 5U);
        const char* expected[] = {"",           "", "K", "K", "K\xC3\xBC", "K\xC3\xBCh", "K\xC3\xBChl", "K\xC3\xBChl",
                                  "K\xC3\xBChl"};
        if (capacity != 0)
            EXPECT_STREQ(text, expected[capacity]) << capacity;
        else
            EXPECT_EQ(text[0], '#');
    }
}

TEST(CharacterSet, AnyOctetsGiveValidText) {
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        std::vector<std::uint8_t> octets(random() % 24);
        for (auto& octet : octets)
            octet = static_cast<std::uint8_t>(random());
        if (!octets.empty())
            octets[0] %= 8;
        const std::string text = DecodeText(octets);
        EXPECT_TRUE(IsUtf8(text)) << ToHex(octets.data(), octets.size());
        EXPECT_LT(text.size(), DecodedTextBound(octets.size()));
        EXPECT_EQ(text.find('\0'), std::string::npos);
    }
}

TEST(CharacterSet, KnowsUtf8) {
    EXPECT_TRUE(IsUtf8("K\xC3\xBChl \xE2\x82\xAC \xF0\x9F\x98\x80"));
    for (const char* bad : {"\xC3", "\xFC", "\x80", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                            "\xF0\x80\x80\x80", "\xE2\x82", "\xF5\x80\x80\x80"})
        EXPECT_FALSE(IsUtf8(bad)) << ToHex(reinterpret_cast<const std::uint8_t*>(bad), std::strlen(bad));
    EXPECT_EQ(ToUtf8("K\xC3\xBChl"), "K\xC3\xBChl");
    EXPECT_EQ(ToUtf8("K\xFChl \x80"), "K\xC3\xBChl \xE2\x82\xAC");
    EXPECT_EQ(CutUtf8("\xC3\xBC\xC3\xBC", 3), 2U);
    EXPECT_EQ(CutUtf8("\xC3\xBC\xC3\xBC", 4), 4U);
    EXPECT_EQ(CutUtf8("\xC3\xBC", 1), 0U);
}
