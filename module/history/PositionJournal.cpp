#include "module/history/PositionJournal.h"

#include "api/bacnet/BacGeneral.h"
#include "base/DurableFile.h"
#include "module/history/HistoryState.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr const char* SUFFIX = ".run";
constexpr std::size_t HASH_LENGTH = 16;
constexpr char SEPARATOR = '\t'; // not part of a position

// FNV-1a, against torn writes.
std::string Hash(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    char digits[HASH_LENGTH + 1];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

} // namespace

CPositionJournal::CPositionJournal(const CHistoryState& state) : m_state(state), m_path(state.GetPath() + SUFFIX) {}

CPositionJournal::~CPositionJournal() {
    if (m_file >= 0)
        ::close(m_file);
}

void CPositionJournal::Recover() {
    std::string text;
    if (ReadWholeFile(m_path, CProfileFile::MAX_FILE_SIZE, text) != FileRead::Ok)
        return;
    const std::string_view line = text;
    const std::size_t end = line.find(SEPARATOR, HASH_LENGTH);
    if (end != std::string_view::npos && Hash(line.substr(HASH_LENGTH)) == line.substr(0, HASH_LENGTH)) {
        const std::string name(line.substr(end + 1));
        const BACSTAC_DATE_TIME noted = ParsePosition(std::string(line.substr(HASH_LENGTH, end - HASH_LENGTH)));
        BACSTAC_DATE_TIME position;
        m_state.LoadTrendPosition(name, position);
        if (Compare(noted, position) == COMPARE_GREATER && !m_state.SaveTrendPosition(name, noted))
            return;
    }
    ::unlink(m_path.c_str());
}

void CPositionJournal::Note(const std::string& objectName, const BACSTAC_DATE_TIME& position) {
    if (m_file < 0)
        m_file = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0666);
    const std::string body = FormatPosition(position) + SEPARATOR + objectName;
    const std::string line = Hash(body) + body;
    // A note that cannot be written is none: the next transfer reads more again than it must.
    if (m_file < 0 || ::pwrite(m_file, line.data(), line.size(), 0) != static_cast<ssize_t>(line.size()))
        return;
    if (line.size() < m_size && ::ftruncate(m_file, static_cast<off_t>(line.size())) != 0)
        return;
    m_size = line.size();
}

void CPositionJournal::Clear() {
    if (m_file < 0)
        return;
    ::unlink(m_path.c_str());
    ::close(m_file);
    m_file = -1;
    m_size = 0;
}
