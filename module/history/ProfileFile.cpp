#include "module/history/ProfileFile.h"

#include "base/DurableFile.h"

#include <algorithm>
#include <mutex>
#include <string_view>

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

// One for all files: there is one state file, and writes are rare.
std::mutex& WriterLock() {
    static std::mutex* lock = new std::mutex; // outlives threads that were let go of
    return *lock;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

std::string_view TrimLeft(std::string_view text) {
    const auto first = std::find_if_not(text.begin(), text.end(), IsBlank);
    return text.substr(static_cast<std::size_t>(first - text.begin()));
}

std::string_view Trim(std::string_view text) {
    text = TrimLeft(text);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

char Fold(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualWithoutCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(), [](char a, char b) { return Fold(a) == Fold(b); });
}

std::string_view WithoutQuotes(std::string_view value) {
    const bool quoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string OneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
    }
    return line;
}

// Begins with a character that a reader takes for a section or a comment.
bool IsOddName(std::string_view key) {
    key = TrimLeft(key);
    return !key.empty() && (key.front() == '[' || key.front() == ';');
}

struct Line {
    std::size_t begin; // offsets into the text
    std::size_t end;   // without the line break
    std::size_t next;
};

bool NextLine(std::string_view text, std::size_t from, Line& line) {
    if (from >= text.size())
        return false;
    const std::size_t feed = text.find('\n', from);
    line.begin = from;
    line.next = feed == std::string_view::npos ? text.size() : feed + 1;
    line.end = feed == std::string_view::npos ? text.size() : feed;
    if (line.end > line.begin && text[line.end - 1] == '\r')
        --line.end;
    return true;
}

// How the lines of a section are read.
enum class Keys { Plain, Names };

std::size_t SplitAt(std::string_view line, Keys keys) {
    return keys == Keys::Names ? line.rfind('=') : line.find('=');
}

// The name of the section that a line opens. Among names a line with "[" may be the entry of an odd one: that has its
// last "=" behind any bracket.
bool IsSection(std::string_view line, Keys keys, std::string_view& name) {
    const std::string_view trimmed = Trim(line);
    if (trimmed.empty() || trimmed.front() != '[')
        return false;
    if (keys == Keys::Names) {
        const std::size_t split = trimmed.rfind('=');
        if (split != std::string_view::npos && trimmed.find(']', split) == std::string_view::npos)
            return false;
    }
    name = Trim(trimmed.substr(1, trimmed.find(']') - 1));
    return true;
}

bool IsEntryOf(std::string_view line, std::string_view key, Keys keys) {
    const std::size_t split = SplitAt(line, keys);
    if (split == std::string_view::npos)
        return false;
    if (IsOddName(key))
        return keys == Keys::Names && line.substr(0, split) == key;
    return !IsOddName(line) && EqualWithoutCase(Trim(line.substr(0, split)), Trim(key));
}

struct Place {
    bool hasSection = false;
    bool hasEntry = false;
    Keys keys = Keys::Plain;
    Line entry{};
    std::size_t sectionEnd = 0; // behind the section's last line that is not empty
};

Place Find(std::string_view text, std::string_view section, std::string_view key, std::string_view nameSection) {
    Place place;
    Line line{};
    Keys keys = Keys::Plain; // of the section that the scan is in
    std::size_t from = text.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0;
    for (; NextLine(text, from, line); from = line.next) {
        const std::string_view content = text.substr(line.begin, line.end - line.begin);
        if (place.hasSection && IsEntryOf(content, key, keys)) {
            place.hasEntry = true;
            place.entry = line;
            return place;
        }
        std::string_view name;
        if (IsSection(content, keys, name)) {
            if (place.hasSection)
                return place;
            keys = !nameSection.empty() && EqualWithoutCase(name, nameSection) ? Keys::Names : Keys::Plain;
            place.keys = keys;
            place.hasSection = EqualWithoutCase(name, section);
        }
        if (place.hasSection && !Trim(content).empty())
            place.sectionEnd = line.next;
    }
    return place;
}

} // namespace

CProfileFile::CProfileFile(std::string path, std::string nameSection)
    : m_path(std::move(path)), m_nameSection(std::move(nameSection)) {}

std::string CProfileFile::Read(const std::string& section, const std::string& key) const {
    std::string text;
    if (ReadWholeFile(m_path, MAX_FILE_SIZE, text) != FileRead::Ok)
        return {};
    const Place place = Find(text, section, OneLine(key), m_nameSection);
    if (!place.hasEntry)
        return {};
    const auto line = std::string_view(text).substr(place.entry.begin, place.entry.end - place.entry.begin);
    return std::string(WithoutQuotes(Trim(line.substr(SplitAt(line, place.keys) + 1))));
}

bool CProfileFile::Write(const std::string& section, const std::string& key, const std::string& value) const {
    const std::lock_guard lock(WriterLock());
    std::string text;
    if (ReadWholeFile(m_path, MAX_FILE_SIZE, text) == FileRead::Failed)
        return false;
    const std::string name = OneLine(key);
    const Place place = Find(text, section, name, m_nameSection);
    if (place.hasEntry) {
        const std::size_t split =
            SplitAt(std::string_view(text).substr(place.entry.begin, place.entry.end - place.entry.begin), place.keys);
        const std::size_t valueAt = place.entry.begin + split + 1;
        text.replace(valueAt, place.entry.next - valueAt, value + "\r\n");
    } else {
        const std::size_t at = place.hasSection ? place.sectionEnd : text.size();
        std::string added = at > 0 && text[at - 1] != '\n' ? "\r\n" : "";
        if (!place.hasSection)
            added += "[" + section + "]\r\n";
        added += name + "=" + value + "\r\n";
        text.insert(at, added);
    }
    return text.size() <= MAX_FILE_SIZE && ReplaceWholeFile(m_path, text, FileAccess::AsBefore);
}
