// Text of log lines: printf formatting without a length limit, and escaping. Any thread; no state.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

namespace bacnet::log {

// printf into a string as long as it has to be. A format that the C library refuses gives "(unprintable log line)".
std::string FormatLine(const char* format, std::va_list arguments);

// One printable line: control characters become \n, \r, \t or \xNN, and so do bytes that are not UTF-8 and the
// characters that reorder or break a line on a terminal (C1 controls, bidirectional overrides, line separators). Text
// from a device can so neither forge a line nor steer a terminal.
std::string EscapeLine(std::string_view text);

} // namespace bacnet::log
