#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Written by the bit layout alone, whether it is well-formed or not.
std::string Encode(char32_t point, std::size_t length) {
    if (length == 1)
        return std::string(1, static_cast<char>(point));
    std::string text(length, '\0');
    for (std::size_t i = length - 1; i > 0; --i, point >>= 6)
        text[i] = static_cast<char>(0x80U | (point & 0x3FU));
    text[0] = static_cast<char>((0xF00U >> length & 0xFFU) | point);
    return text;
}

std::size_t ShortestForm(char32_t point) {
    return point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
}

bool IsScalar(char32_t point) {
    return point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
}

} // namespace

TEST(Utf8, TakesEveryCharacterInItsShortestFormOnly) {
    for (char32_t point = 0; point < 0x120000; ++point) {
        for (std::size_t length = ShortestForm(point); length <= 4; ++length) {
            const bool isGood = IsScalar(point) && length == ShortestForm(point);
            const Utf8Character first = FirstUtf8(Encode(point, length) + "x");
            ASSERT_EQ(first.length, isGood ? length : 0) << std::hex << static_cast<unsigned>(point);
            ASSERT_EQ(first.point, isGood ? point : 0) << std::hex << static_cast<unsigned>(point);
        }
    }
}

TEST(Utf8, RefusesWhatIsCutOrBroken) {
    EXPECT_EQ(FirstUtf8("").length, 0U);
    for (const char32_t point : {U'\u00E9', U'\u20AC', U'\U0001F600'}) {
        const std::string whole = Encode(point, ShortestForm(point));
        for (std::size_t size = 1; size < whole.size(); ++size) {
            EXPECT_EQ(FirstUtf8(whole.substr(0, size)).length, 0U);
            std::string broken = whole;
            broken[size] = 'A';
            EXPECT_EQ(FirstUtf8(broken).length, 0U);
            broken[size] = '\xC3';
            EXPECT_EQ(FirstUtf8(broken).length, 0U);
        }
    }
    for (unsigned octet = 0x80; octet < 0x100; ++octet)
        EXPECT_EQ(FirstUtf8(std::string(1, static_cast<char>(octet))).length, 0U) << octet;
}
