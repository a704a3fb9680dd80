#include "module/editors/NumberChecks.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

// The number, or the message.
template <class T>
std::string Told(const Checked<T>& checked) {
    return checked.message ? checked.message : std::to_string(checked.value);
}

std::string Unsigned(std::string_view text, std::uint32_t low = 0, std::uint32_t high = 0xFFFFFFFF) {
    return Told(CheckUnsigned(text, low, high));
}

std::string Signed(std::string_view text, std::int32_t low = INT32_MIN, std::int32_t high = INT32_MAX) {
    return Told(CheckSigned(text, low, high));
}

std::string Real(std::string_view text, RealSize size = RealSize::Double, double opened = 0) {
    const auto checked = CheckReal(text, size, opened);
    if (checked.message)
        return checked.message;
    return checked.value ? FormatReal(*checked.value, size) : "none";
}

const char* const NO_NUMBERS[] = {"",     " ",    "+",   "-",   "12a",          "12 ", "1 2", "0x10",
                                  "++12", "+ 12", "1.0", "1e3", "\u0661\u0662", "NaN", ",",   "1,000"};

TEST(UnsignedCheck, TakesWhatLiesWithinTheLimits) {
    EXPECT_EQ(Unsigned("0"), "0");
    EXPECT_EQ(Unsigned("4294967295"), "4294967295");
    EXPECT_EQ(Unsigned("00000000012"), "12");
    EXPECT_EQ(Unsigned(" \t\r\n\v\f12"), "12");
    EXPECT_EQ(Unsigned("+12"), "12");
    EXPECT_EQ(Unsigned("1", 1, 16), "1");
    EXPECT_EQ(Unsigned("16", 1, 16), "16");
}

TEST(UnsignedCheck, RefusesTheRest) {
    for (const char* const text : NO_NUMBERS)
        EXPECT_EQ(Unsigned(text), "Invalid unsigned value") << text;
    for (const char* const text : {"4294967296", "18446744073709551616", "-1", "-0", "+-1"})
        EXPECT_EQ(Unsigned(text), "Invalid unsigned value") << text;
    EXPECT_EQ(Unsigned("0", 1, 16), "Invalid unsigned value");
    EXPECT_EQ(Unsigned("17", 1, 16), "Invalid unsigned value");
    EXPECT_EQ(Unsigned(std::string(100'000, '9')), "Invalid unsigned value");
}

TEST(SignedCheck, TakesWhatLiesWithinTheLimits) {
    EXPECT_EQ(Signed("-2147483648"), "-2147483648");
    EXPECT_EQ(Signed("2147483647"), "2147483647");
    EXPECT_EQ(Signed(" -5"), "-5");
    EXPECT_EQ(Signed("+5"), "5");
    EXPECT_EQ(Signed("-3", -3, 3), "-3");
}

TEST(SignedCheck, RefusesTheRest) {
    for (const char* const text : NO_NUMBERS)
        EXPECT_EQ(Signed(text), "Invalid signed value") << text;
    for (const char* const text : {"2147483648", "-2147483649", "+-5", "--5", "- 5", "4294967295"})
        EXPECT_EQ(Signed(text), "Invalid signed value") << text;
    EXPECT_EQ(Signed("-4", -3, 3), "Invalid signed value");
    EXPECT_EQ(Signed("4", -3, 3), "Invalid signed value");
}

TEST(EnumeratedCheck, TakesNumbersUpToItsOwnLimit) {
    EXPECT_EQ(Told(CheckEnumerated("0")), "0");
    EXPECT_EQ(Told(CheckEnumerated(" +32768")), "32768");
    for (const char* const text : {"32769", "65535", "-1", "active"})
        EXPECT_EQ(Told(CheckEnumerated(text)), "Invalid value") << text;
    for (const char* const text : NO_NUMBERS)
        EXPECT_EQ(Told(CheckEnumerated(text)), "Invalid value") << text;
}

TEST(YearCheck, IsTheFullYearAsItIsTyped) {
    EXPECT_EQ(Told(CheckYear("")), "65535");
    EXPECT_EQ(Told(CheckYear("2026")), "2026");
    EXPECT_EQ(Told(CheckYear("12")), "12") << "no short form";
    EXPECT_EQ(Told(CheckYear("0")), "0");
    EXPECT_EQ(Told(CheckYear("9999")), "9999");
    EXPECT_EQ(Told(CheckYear("65536")), "0") << "without a check of the range";
    for (const char* const text : {" ", "20x6", "2026 ", "-12", "two", "0x7E"})
        EXPECT_EQ(Told(CheckYear(text)), "Invalid year") << text;
}

TEST(YearText, IsEmptyForAnyYear) {
    EXPECT_EQ(FormatYear(0xFFFF), "");
    EXPECT_EQ(FormatYear(2026), "2026");
    EXPECT_EQ(FormatYear(0), "0");
}

TEST(RealText, HasAlwaysAPoint) {
    struct Case {
        double value;
        const char* single;
        const char* full;
    };
    const Case cases[] = {
        {5, "5.0", "5.0"},
        {0, "0.0", "0.0"},
        {-0.0, "-0.0", "-0.0"},
        {21.5, "21.5", "21.5"},
        {0.01, "0.01", "0.01"},
        {-1.25, "-1.25", "-1.25"},
        {1234567, "1234567.0", "1234567.0"},
        {16777217, "1.677722e+07", "16777217.0"},
        {1e10, "1.e+10", "10000000000.0"},
        {1e20, "1.e+20", "1.e+20"},
        {1e-10, "1.e-10", "1.e-10"},
        {1.5e300, "1.5e+300", "1.5e+300"},
        {0.1, "0.1", "0.1"},
        {0.1234567890123456, "0.1234568", "0.123456789012346"},
        {1.0 / 3, "0.3333333", "0.333333333333333"},
        {NO_NUMBER, "nan", "nan"},
        {-NO_NUMBER, "nan", "nan"},
        {INFINITE, "inf", "inf"},
        {-INFINITE, "-inf", "-inf"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(FormatReal(one.value, RealSize::Single), one.single);
        EXPECT_EQ(FormatReal(one.value, RealSize::Double), one.full);
    }
}

TEST(RealText, ConvertsBackWhole) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 20'000; ++i) {
        const auto value = std::bit_cast<double>(random());
        const auto single = double{std::bit_cast<float>(static_cast<std::uint32_t>(random()))};
        for (const auto& [number, size] : {std::pair(value, RealSize::Double), std::pair(single, RealSize::Single)}) {
            const std::string text = FormatReal(number, size);
            const auto checked = CheckReal(text, size, number);
            ASSERT_EQ(checked.message, nullptr) << text;
            EXPECT_EQ(FormatReal(*checked.value, size), text);
        }
    }
}

TEST(RealCheck, TakesDecimalAndScientificForms) {
    EXPECT_EQ(Real("5"), "5.0");
    EXPECT_EQ(Real("  5.  "), "5.0");
    EXPECT_EQ(Real(".5"), "0.5");
    EXPECT_EQ(Real("+1.5e3"), "1500.0");
    EXPECT_EQ(Real("-1E-3\t"), "-0.001");
    EXPECT_EQ(Real("1.e+10"), "10000000000.0");
    EXPECT_EQ(Real("-0"), "-0.0");
    EXPECT_EQ(Real("3.402823e+38", RealSize::Single), "3.402823e+38");
    EXPECT_EQ(Real(""), "none");
    EXPECT_EQ(Real(" \t "), "none");
}

TEST(RealCheck, RefusesTheRest) {
    for (const char* const text :
         {"+",   "-",   ".",    "e5",  "1e",       "1,5",    "1.5.2", "1.0e+10.0", "0x10",   "1 2",   "+-1",
          "--1", "inf", "-inf", "nan", "infinity", "nan(1)", "1e999", "-1e999",    "1e-999", "\u0661"})
        EXPECT_EQ(Real(text), "Invalid real value") << text;
    EXPECT_EQ(Real(std::string(100'000, 'x')), "Invalid real value");
}

TEST(RealCheck, KnowsTheRangeOf32Bits) {
    EXPECT_EQ(Real("1e39", RealSize::Double), "1.e+39");
    EXPECT_EQ(Real("1e39", RealSize::Single), "Invalid real value");
    EXPECT_EQ(Real("-1e39", RealSize::Single), "Invalid real value");
}

TEST(RealCheck, LeavesAnOpenedValueThatItCouldNotConvert) {
    for (const RealSize size : {RealSize::Single, RealSize::Double}) {
        EXPECT_EQ(Real("nan", size, NO_NUMBER), "nan");
        EXPECT_EQ(Real("inf", size, INFINITE), "inf");
        EXPECT_EQ(Real("-inf", size, -INFINITE), "-inf");
        EXPECT_EQ(Real("inf", size, -INFINITE), "Invalid real value");
        EXPECT_EQ(Real("nan", size, INFINITE), "Invalid real value");
    }
    EXPECT_EQ(*CheckReal(FormatReal(DBL_MAX, RealSize::Double), RealSize::Double, DBL_MAX).value, DBL_MAX)
        << "its digits are those of a larger number";
}

} // namespace
