// Reading and replacing a small file as a whole. Any thread may call these; writers of one path take turns by a lock
// of their own. Paths are UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

enum class FileRead {
    Ok,
    Missing, // there is no such file
    Failed   // it cannot be read, is no regular file, or is longer than the limit
};

// text is left alone unless the result is Ok.
FileRead ReadWholeFile(const std::string& path, std::size_t limit, std::string& text);

// Puts a temporary file, whose name is the path and ".tmp", made durable, in the place of the file. At any moment the
// path holds the whole old or the whole new text. False: the old file stands as it was. A symbolic link is followed,
// and an existing file keeps its permissions.
bool ReplaceWholeFile(const std::string& path, std::string_view text);
