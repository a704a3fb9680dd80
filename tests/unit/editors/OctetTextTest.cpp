#include "module/editors/OctetText.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Octets = std::vector<unsigned char>;

TEST(OctetText, HasTwoDigitsToAnOctet) {
    EXPECT_EQ(FormatOctets({}), "");
    EXPECT_EQ(FormatOctets(Octets{0x00, 0x0A, 0xFF}), "000AFF");
}

TEST(OctetText, ReadsBothCases) {
    EXPECT_EQ(ParseOctets(""), Octets{});
    EXPECT_EQ(ParseOctets("aB0c"), (Octets{0xAB, 0x0C}));
}

TEST(OctetText, IsNoneWithHalfAnOctetOrAnotherCharacter) {
    for (const char* const text : {"a", "abc", "0x", "g0", "0g", " 0", "0 ", "+1", "-1", "00 1", "\u00E9", "\uFF11"})
        EXPECT_FALSE(ParseOctets(text)) << text;
}

TEST(OctetText, IsItsOwnInverse) {
    Octets all(256);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<unsigned char>(i);
    EXPECT_EQ(ParseOctets(FormatOctets(all)), all);
}

} // namespace
