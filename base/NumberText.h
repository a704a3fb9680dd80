// Numbers in text, without a locale. The whole text has to be the number: no blanks, no plus sign, nothing behind it.
// What does not fit the type is refused, never cut. Pure functions, any thread.
#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

// Integers are decimal; T float or double takes decimal and scientific forms and refuses what is not finite.
template <class T>
std::optional<T> ParseAs(std::string_view text) {
    T value{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size())
        return std::nullopt;
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(value))
            return std::nullopt;
    }
    return value;
}

inline std::optional<std::uint32_t> ParseU32(std::string_view text) {
    return ParseAs<std::uint32_t>(text);
}

inline std::optional<std::int32_t> ParseI32(std::string_view text) {
    return ParseAs<std::int32_t>(text);
}

inline std::optional<double> ParseNumber(std::string_view text) {
    return ParseAs<double>(text);
}
