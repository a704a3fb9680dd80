// Case folding for searches: text that differs only in case folds to the same bytes.
#pragma once

#include <string>
#include <string_view>

namespace bacnet::directory {

// Appends text, UTF-8, with the letters of ASCII, Latin-1, Latin Extended-A, Greek and Cyrillic made small. Anything
// else, bytes that are not UTF-8 included, passes as it is.
void AppendFolded(std::string& out, std::string_view text);

} // namespace bacnet::directory
