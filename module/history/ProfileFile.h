// Files in the form of the platform's private profiles: sections in square brackets, lines of key=value, ";" comments.
// Any thread may use one; writers of the process take turns. Text is bytes in the narrow code page.
//
// - Sections and keys match without case (ASCII), blanks around keys and values do not count, and one pair of quotes
//   around a value is taken off. Of two equal sections or keys the first counts.
// - LF and CRLF end a line; CRLF is written. A write changes one line and keeps every other byte of the file: comments,
//   lines that mean nothing, sections and their order.
// - A missing file, section or key is created; a new key goes behind the last line of its section.
// - A line break in a key becomes a blank.
//
// One section can be named as the one whose keys are names that a device made up and whose values never hold a "=".
// There a line is split at its last "=", so that a name may hold one, and a name that begins with "[" or ";" is found
// by the exact start of its line, before the line can count as a section or a comment.
#pragma once

#include <string>

class CProfileFile {
public:
    static constexpr std::size_t MAX_FILE_SIZE = 64U << 20; // bytes; a longer file is neither read nor written

    explicit CProfileFile(std::string path, std::string nameSection = {});

    const std::string& GetPath() const { return m_path; }
    // Empty when the file, the section or the key is missing or cannot be read.
    std::string Read(const std::string& section, const std::string& key) const;
    // False when the file cannot be read or replaced; it then stands as it was.
    bool Write(const std::string& section, const std::string& key, const std::string& value) const;

private:
    const std::string m_path;
    const std::string m_nameSection;
};
