// What the text of a number's field means, or what is wrong with it, and the texts that such fields begin with. All
// texts are narrow and know no locale. Numbers are read as C reads them: blanks and a plus sign may stand in front,
// nothing may stand behind. Pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The number of a field; it counts while there is no message.
template <class T>
struct Checked {
    const char* message = nullptr; // for the error box
    T value{};
};

// Both limits included.
Checked<std::uint32_t> CheckUnsigned(std::string_view text, std::uint32_t low, std::uint32_t high);
Checked<std::int32_t> CheckSigned(std::string_view text, std::int32_t low, std::int32_t high);
// A number without a name.
Checked<std::uint32_t> CheckEnumerated(std::string_view text);
// Empty is any year. The number is cut to 16 bits and is the full year: 12 is no short form of 2012.
Checked<std::uint16_t> CheckYear(std::string_view text);
std::string FormatYear(std::uint16_t year);

enum class RealSize { Single, Double };

// Also blanks behind the number are taken. A number that the size cannot hold is refused, as are infinities and what is
// no number, but while the text is still that of the opened value, the value stays. No value: an empty text, for the
// caller to judge.
Checked<std::optional<double>> CheckReal(std::string_view text, RealSize size, double opened);
// To 32 bits. What is no number is the opened value, which stays to the bit.
float Narrowed(double value, float opened);
inline constexpr const char* INVALID_REAL = "Invalid real value";

// With 7 or 15 digits, in the general form, and always with a point: "5.0", "1.e+10". What is not finite is "nan",
// "inf" or "-inf".
std::string FormatReal(double value, RealSize size);
