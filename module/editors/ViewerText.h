// The text of a value, in lines. Pure functions.
#pragma once

#include <string>
#include <string_view>

// One item of a list below the other, indented by tabs; a value in parentheses stays in its line. Blanks go, wherever
// they stand. Lines end with "\r\n".
std::string Reflow(std::string_view text);
