#include "module/editors/NumberChecks.h"

#include "api/bacnet/Types.h"
#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <cfloat>

namespace {

constexpr std::string_view BLANKS = " \t\n\v\f\r";
constexpr std::uint32_t LARGEST_TYPED_ENUMERATED = 0x8000;

// What of a text has to be the number.
std::string_view WithoutLead(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    return text;
}

std::string_view Trimmed(std::string_view text) {
    text.remove_suffix(text.size() - (text.find_last_not_of(BLANKS) + 1));
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text;
}

template <class T>
Checked<T> CheckWithin(std::string_view text, T low, T high, const char* message) {
    const std::optional<T> number = ParseAs<T>(WithoutLead(text));
    if (!number || *number < low || *number > high)
        return {message};
    return {nullptr, *number};
}

int DigitsOf(RealSize size) {
    return size == RealSize::Single ? 7 : 15;
}

double LargestOf(RealSize size) {
    return size == RealSize::Single ? double{FLT_MAX} : DBL_MAX;
}

} // namespace

Checked<std::uint32_t> CheckUnsigned(std::string_view text, std::uint32_t low, std::uint32_t high) {
    return CheckWithin(text, low, high, "Invalid unsigned value");
}

Checked<std::int32_t> CheckSigned(std::string_view text, std::int32_t low, std::int32_t high) {
    return CheckWithin(text, low, high, "Invalid signed value");
}

Checked<std::uint32_t> CheckEnumerated(std::string_view text) {
    return CheckWithin(text, std::uint32_t{0}, LARGEST_TYPED_ENUMERATED, "Invalid value");
}

Checked<std::uint16_t> CheckYear(std::string_view text) {
    if (text.empty())
        return {nullptr, BACSTAC_ANY_YEAR};
    const std::optional<std::uint32_t> number = ParseU32(WithoutLead(text));
    if (!number)
        return {"Invalid year"};
    return {nullptr, static_cast<std::uint16_t>(*number)};
}

std::string FormatYear(std::uint16_t year) {
    return year == BACSTAC_ANY_YEAR ? std::string() : std::to_string(year);
}

Checked<std::optional<double>> CheckReal(std::string_view text, RealSize size, double opened) {
    text = Trimmed(text);
    if (text.empty())
        return {};
    const std::optional<double> number = ParseNumber(WithoutLead(text));
    if (number && std::fabs(*number) <= LargestOf(size))
        return {nullptr, number};
    if (text == FormatReal(opened, size))
        return {nullptr, opened};
    return {INVALID_REAL};
}

float Narrowed(double value, float opened) {
    return std::isnan(value) ? opened : static_cast<float>(value);
}

std::string FormatReal(double value, RealSize size) {
    if (std::isnan(value))
        return "nan"; // whatever its sign
    std::array<char, 50> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, DigitsOf(size));
    std::string text(buffer.data(), end.ptr);
    if (std::isinf(value) || text.find('.') != std::string::npos)
        return text;
    const auto exponent = text.find('e');
    return exponent == std::string::npos ? text + ".0" : text.insert(exponent, ".");
}
