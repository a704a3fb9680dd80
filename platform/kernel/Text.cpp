#include "platform/kernel/Text.h"

#include <algorithm>
#include <cstring>

std::string_view CutText(std::string_view text, std::size_t size) {
    if (text.size() <= size) {
        return text;
    }
    const auto isContinuation = [&](std::size_t i) { return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80; };
    std::size_t end = size;
    while (end > 0 && isContinuation(end)) {
        --end;
    }
    return text.substr(0, end);
}

void FillBuffer(char* buffer, std::size_t size, std::string_view text) {
    const std::string_view part = CutText(text, size - 1);
    std::memset(buffer, 0, size);
    part.copy(buffer, part.size());
}

bool HasControlCharacter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F;
    });
}
