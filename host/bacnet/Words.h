// Small steps of reading what people type. Pure functions, any thread.
#pragma once

#include <string>
#include <string_view>

// In double quotes, for messages.
inline std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

// Without the blanks at both ends.
inline std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}
