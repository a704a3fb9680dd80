#include "platform/stack/codec/CharacterSet.h"

#include "platform/stack/codec/CodePage.h"
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

TEST(CharacterSet, DecodesCodePagesThatTheSystemKnows) {
    EXPECT_EQ(Text("01 03A4 41 83 5C 42"), "A\xE3\x82\xBD"
                                           "B");               // 932: katakana so
    EXPECT_EQ(Text("01 03A8 B2 E2"), "\xE6\xB5\x8B");          // 936
    EXPECT_EQ(Text("01 03B5 C7 D1"), "\xED\x95\x9C");          // 949
    EXPECT_EQ(Text("01 03B6 B4 FA"), "\xE6\xB8\xAC");          // 950
    EXPECT_EQ(Text("01 04E3 CF F0"), "\xD0\x9F\xD1\x80");      // 1251: Pr
    EXPECT_EQ(Text("01 6FB0 A3"), "\xC5\x81");                 // 28592: ISO 8859-2
    EXPECT_EQ(Text("01 FDE9 C3BC"), "\xC3\xBC");               // 65001: UTF-8
    EXPECT_EQ(Text("01 03A4 83 5C 00 83 5C"), "\xE3\x82\xBD"); // up to the NUL
}

TEST(CharacterSet, DecodesJisAsDevicesSendIt) {
    EXPECT_EQ(Text("02 1B2442 467C 4B5C 1B2842 41"), "\xE6\x97\xA5\xE6\x9C\xAC\x41"); // with escapes
    EXPECT_EQ(Text("02 93FA 967B"), "\xE6\x97\xA5\xE6\x9C\xAC");                      // Shift-JIS
    EXPECT_EQ(Text("02 C6FC CBDC"), "\xE6\x97\xA5\xE6\x9C\xAC");                      // EUC
    EXPECT_EQ(Text("02 41 42"), "AB");
}

TEST(CharacterSet, GivesWayToTheEncodingOfAScope) {
    const std::string cyrillic = FindEncoding("cp1251");
    const std::string bare = FindEncoding("JIS-X-0208");
    const std::string ucs2 = FindEncoding("ucs-2");
    {
        const TextScope scope(&cyrillic);
        EXPECT_EQ(Text("00 CFF0"), "\xD0\x9F\xD1\x80") << "says UTF-8";
        EXPECT_EQ(Text("05 CFF0 00 CF"), "\xD0\x9F\xD1\x80") << "says ISO 8859-1";
        EXPECT_EQ(Text("01 03A4 CFF0"), "\xD0\x9F\xD1\x80") << "says code page 932";
        EXPECT_EQ(Text("01 03"), "");
        EXPECT_EQ(Text("00"), "");
        EXPECT_EQ(Text(""), "");
        {
            const TextScope inner(nullptr);
            EXPECT_EQ(Text("05 CF"), "\xC3\x8F");
        }
        const TextScope inner(&bare);
        EXPECT_EQ(Text("02 467C 4B5C"), "\xE6\x97\xA5\xE6\x9C\xAC");
    }
    {
        const TextScope scope(&ucs2);
        EXPECT_EQ(Text("00 004B 00FC"), "K\xC3\xBC");
    }
    EXPECT_EQ(Text("05 CF"), "\xC3\x8F");
}

TEST(CharacterSet, FindsEncodingsByTheNamesThatPeopleUse) {
    for (const char* name : {"utf-8", "UTF-8", "iso-8859-1", "cp932", "CP932", "932", "shift_jis", "euc-jp", "gb18030",
                             "ucs-2", "ucs-4", "jis-x-0208", "koi8-r", "65001"})
        EXPECT_NE(FindEncoding(name), "") << name;
    for (const char* name : {"", "klingon", "0", "65535", "cp", "cp99999", "utf-8//IGNORE", "//TRANSLIT"})
        EXPECT_EQ(FindEncoding(name), "") << name;
}

TEST(CharacterSet, MakesTheBestOfAWrongSet) {
    EXPECT_EQ(Text("00 4B FC 68 6C"), "K\xC3\xBChl"); // says UTF-8, is Windows-1252
    EXPECT_EQ(Text("00 80"), "\xE2\x82\xAC");
    EXPECT_EQ(Text("01 7FFF 41 83 5C 42"), "A?\\B");          // no such code page
    EXPECT_EQ(Text("01 03A4 41 FF 42"), "A\xEF\xBF\xBD\x42"); // a wrong octet costs itself alone
    EXPECT_EQ(Text("01 03A4 41 83"), "A\xEF\xBF\xBD");        // half a character
    EXPECT_EQ(Text("02 41 FF FF"), "A??");                    // neither Shift-JIS nor EUC
    EXPECT_EQ(Text("09 4B C3BC"), "K\xC3\xBC");               // no such set yet
    EXPECT_EQ(Text("04 004B 00"), "K");                       // half a character
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
        if (octets.size() > 2 && octets[0] == CHARSET_DBCS && round % 2 == 0) { // of a page that there is
            octets[1] = 0x03;
            octets[2] = static_cast<std::uint8_t>(0xA4 + random() % 20);
        }
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
