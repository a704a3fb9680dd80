#include "module/editors/ViewerText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ViewerText, PutsTheItemsOfAListBelowOneAnother) {
    EXPECT_EQ(Reflow("{a, b}"), "{\r\n\ta,\r\n\tb\r\n}");
    EXPECT_EQ(Reflow("{{a}, {b, c}}"), "{\r\n\t{\r\n\t\ta\r\n\t},\r\n\t{\r\n\t\tb,\r\n\t\tc\r\n\t}\r\n}");
    EXPECT_EQ(Reflow("a, b"), "a,\r\nb");
    EXPECT_EQ(Reflow("{}"), "{\r\n\t\r\n}");
}

TEST(ViewerText, LeavesParenthesesInTheirLine) {
    EXPECT_EQ(Reflow("{(1, 2), {x}}"), "{\r\n\t(1,2),\r\n\t{\r\n\t\tx\r\n\t}\r\n}");
    EXPECT_EQ(Reflow("(a(b),c)"), "(a(b),\r\nc)") << "the first closing one ends them all";
    EXPECT_EQ(Reflow("({a},b)"), "({\r\n\ta\r\n},b)");
}

TEST(ViewerText, DropsBlanksAndNothingElse) {
    EXPECT_EQ(Reflow("of the  zone"), "ofthezone");
    EXPECT_EQ(Reflow("a\tb\nc\r\n\u00A0\u00E9"), "a\tb\nc\r\n\u00A0\u00E9");
    EXPECT_EQ(Reflow(" "), "");
    EXPECT_EQ(Reflow(""), "");
}

TEST(ViewerText, SurvivesBracesThatDoNotMatch) {
    EXPECT_EQ(Reflow("}"), "\r\n}");
    EXPECT_EQ(Reflow("}}{a"), "\r\n}\r\n}{\r\n\ta");
    EXPECT_EQ(Reflow("(a,b"), "(a,b");
}

TEST(ViewerText, StaysSmallForATextOfBraces) {
    const std::string braces(100'000, '{');
    EXPECT_LT(Reflow(braces).size(), 100 * braces.size());
    EXPECT_EQ(Reflow(braces + std::string(100'000, '}')).back(), '}');
}

} // namespace
