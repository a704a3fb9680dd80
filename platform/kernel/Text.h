// UTF-8 text in the kernel's fixed buffers.
#pragma once

#include <cstddef>
#include <string_view>

// The longest part of text that has at most size bytes and does not end inside a character.
std::string_view CutText(std::string_view text, std::size_t size);

// Copies text, cut to leave room for the NUL, into a buffer of size bytes and clears the rest of it.
void FillBuffer(char* buffer, std::size_t size, std::string_view text);

// True when text has a control character (0x00..0x1F, 0x7F).
bool HasControlCharacter(std::string_view text);
