#include "platform/kernel/Text.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(KernelText, IsCutAtTheBoundaryOfACharacter) {
    EXPECT_EQ(CutText("plain", 5), "plain");
    EXPECT_EQ(CutText("plain", 4), "plai");
    EXPECT_EQ(CutText("h\xC3\xB6he", 2), "h");
    EXPECT_EQ(CutText("h\xC3\xB6he", 3), "h\xC3\xB6");
    EXPECT_EQ(CutText("\xF0\x9F\x94\xA5", 3), "");
    EXPECT_EQ(CutText("x", 0), "");
}

TEST(KernelText, FillsTheWholeBuffer) {
    char buffer[8];
    std::memset(buffer, 'x', sizeof buffer);
    FillBuffer(buffer, sizeof buffer, "abc");
    EXPECT_EQ(std::string_view(buffer, sizeof buffer), std::string_view("abc\0\0\0\0\0", 8));
    FillBuffer(buffer, sizeof buffer, "abcdef\xC3\xB6");
    EXPECT_EQ(std::string_view(buffer, sizeof buffer), std::string_view("abcdef\0\0", 8));
    FillBuffer(buffer, sizeof buffer, "abcdefg");
    EXPECT_EQ(std::string_view(buffer, sizeof buffer), std::string_view("abcdefg\0", 8));
}

TEST(KernelText, ControlCharactersAreFound) {
    EXPECT_FALSE(HasControlCharacter("B\xC3\xA4r 1"));
    EXPECT_TRUE(HasControlCharacter("a\nb"));
    EXPECT_TRUE(HasControlCharacter("a\x7F"));
    EXPECT_TRUE(HasControlCharacter(std::string_view("a\0b", 3)));
}
