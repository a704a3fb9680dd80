#include "platform/stack/log/LogFiles.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string>
#include <system_error>
#include <tuple>

namespace bacnet::log {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t unlimitedPart = 16 * Megabyte; // a part that an editor still opens
constexpr unsigned partsOfLimit = 8;                   // a limit is kept by dropping an eighth at a time

bool AppendTo(std::ofstream& stream, std::string_view line) {
    stream.write(line.data(), static_cast<std::streamsize>(line.size()));
    stream.flush();
    if (stream.good())
        return true;
    stream.clear(); // the next line tries again
    return false;
}

// "bacnet-SSSSSS.PPP.log", of six and three digits or more.
bool ParseName(const std::string& name, unsigned& session, unsigned& part) {
    static constexpr std::string_view prefix = "bacnet-";
    static constexpr std::string_view suffix = ".log";
    if (!name.starts_with(prefix) || !name.ends_with(suffix))
        return false;
    const char* const end = name.data() + name.size() - suffix.size();
    const auto first = std::from_chars(name.data() + prefix.size(), end, session);
    if (first.ec != std::errc{} || first.ptr == end || *first.ptr != '.')
        return false;
    const auto second = std::from_chars(first.ptr + 1, end, part);
    return second.ec == std::errc{} && second.ptr == end;
}

} // namespace

bool OnlineFile::Open(const fs::path& folder) {
    m_folder = folder;
    return StartOver();
}

bool OnlineFile::StartOver() {
    m_stream.close();
    m_stream.clear();
    const fs::path path = m_folder / "bacnet.log";
    std::error_code failure;
    if (fs::exists(path, failure)) {
        fs::rename(path, m_folder / "bacnet.old.log", failure);
        // A file left by a session with a larger limit, or none, must not break this one's.
        const auto size = fs::file_size(m_folder / "bacnet.old.log", failure);
        if (!failure && m_limit != NoLimit && size > m_limit / 2)
            fs::remove(m_folder / "bacnet.old.log", failure);
    }
    m_size = 0;
    m_stream.open(path, std::ios::binary | std::ios::trunc);
    return m_stream.is_open();
}

bool OnlineFile::Append(std::string_view line) {
    if (m_limit != NoLimit && m_size + line.size() > m_limit / 2 && m_size != 0 && !StartOver())
        return false;
    m_size += line.size();
    return AppendTo(m_stream, line);
}

fs::path HistoryFiles::PathOf(const Part& part) const {
    char name[64];
    std::snprintf(name, sizeof name, "bacnet-%06u.%03u.log", part.Session, part.Number);
    return m_folder / name;
}

std::uint64_t HistoryFiles::PartLimit() const {
    return m_limit == NoLimit ? unlimitedPart : std::max<std::uint64_t>(m_limit / partsOfLimit, 1);
}

void HistoryFiles::FindParts() {
    m_parts.clear();
    std::error_code failure;
    for (fs::directory_iterator it(m_folder, failure), end; !failure && it != end; it.increment(failure)) {
        Part part{};
        std::error_code unreadable;
        if (!ParseName(it->path().filename().string(), part.Session, part.Number))
            continue;
        part.Size = it->file_size(unreadable);
        if (!unreadable)
            m_parts.push_back(part);
    }
    std::sort(m_parts.begin(), m_parts.end(), [](const Part& left, const Part& right) {
        return std::tie(left.Session, left.Number) < std::tie(right.Session, right.Number);
    });
}

bool HistoryFiles::Open(const fs::path& folder) {
    m_folder = folder;
    FindParts();
    return StartPart(m_parts.empty() ? 1 : m_parts.back().Session + 1, 1);
}

bool HistoryFiles::StartPart(unsigned session, unsigned number) {
    m_stream.close();
    m_stream.clear();
    m_parts.push_back({session, number, 0});
    m_stream.open(PathOf(m_parts.back()), std::ios::binary | std::ios::trunc);
    if (!m_stream.is_open()) {
        m_parts.pop_back();
        return false;
    }
    Prune();
    return true;
}

void HistoryFiles::Prune() {
    if (m_parts.empty())
        return;
    std::uint64_t total = PartLimit(); // room for the part being written
    std::uint64_t sessions = 1;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        total += i + 1 < m_parts.size() ? m_parts[i].Size : 0;
        sessions += i > 0 && m_parts[i].Session != m_parts[i - 1].Session;
    }
    while (m_parts.size() > 1 && ((m_limit != NoLimit && total > m_limit) || sessions > m_sessionLimit)) {
        std::error_code ignored; // a file that cannot be removed is not counted again before the next session
        fs::remove(PathOf(m_parts.front()), ignored);
        total -= m_parts.front().Size;
        sessions -= m_parts[0].Session != m_parts[1].Session;
        m_parts.pop_front();
    }
}

void HistoryFiles::SetLimits(std::uint64_t bytes, std::uint64_t sessions) {
    m_limit = bytes;
    m_sessionLimit = sessions;
    if (IsOpen())
        Prune();
}

bool HistoryFiles::Append(std::string_view line) {
    Part& part = m_parts.back();
    if (part.Size != 0 && part.Size + line.size() > PartLimit() && !StartPart(part.Session, part.Number + 1))
        return false;
    m_parts.back().Size += line.size();
    return AppendTo(m_stream, line);
}

} // namespace bacnet::log
