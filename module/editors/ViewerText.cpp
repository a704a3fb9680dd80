#include "module/editors/ViewerText.h"

#include <algorithm>
#include <cstddef>

namespace {

// A text of a device may be nothing but braces; deeper than any value is, the lines no longer move to the right.
constexpr std::size_t DEEPEST_INDENT = 64;

} // namespace

// Deliberate: parentheses are a flag and not counted, so that the first closing one ends them all.
std::string Reflow(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 2);
    std::size_t depth = 0;
    bool isInParentheses = false;
    const auto newLine = [&] { lines.append("\r\n").append(std::min(depth, DEEPEST_INDENT), '\t'); };
    for (const char c : text) {
        if (c == ' ')
            continue;
        if (c == '}') {
            depth -= depth != 0 ? 1 : 0;
            newLine();
        }
        lines += c;
        if (c == '(' || c == ')')
            isInParentheses = c == '(';
        if (c == '{')
            ++depth;
        if (c == '{' || (c == ',' && !isInParentheses))
            newLine();
    }
    return lines;
}
