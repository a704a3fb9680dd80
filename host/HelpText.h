// How --help looks: every line fits a terminal of HELP_COLUMNS.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace CLI {
class FormatterBase;
}

inline constexpr std::size_t HELP_COLUMNS = 100;

// For the program's command line; commands that are added later take it over.
std::shared_ptr<CLI::FormatterBase> HelpFormatter();

// Breaks longer lines at their blanks. What goes on below an indented line stands under its second column.
std::string Wrapped(std::string_view text, std::size_t columns);
