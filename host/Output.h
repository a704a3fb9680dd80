// Standard output and standard error of the program. They may be a full disk, a pipe that nobody reads, or closed: a
// job that runs goes on without them, and a command tells at its end that its result was not written. Any thread.
#pragma once

#include <fmt/core.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

// First of all in the process: where a standard stream was closed, no file or socket takes its number.
void OccupyStandardStreams();

// Never fails, other than the library's own; what could not be written is remembered in the stream.
void PutText(std::FILE* stream, std::string_view text);

template <class... Arguments>
void Put(std::FILE* stream, fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    PutText(stream, fmt::format(format, std::forward<Arguments>(arguments)...));
}

// False: something that was printed on standard output is lost.
bool FlushOutput(std::string& error);
