// The files behind the log, and their limits. Not thread-safe: the log calls them under its lock.
//
//   bacnet.log               the online log: this session
//   bacnet.old.log           what the online log held before it was last started over
//   bacnet-SSSSSS.PPP.log    the historical log: session SSSSSS, part PPP; oldest parts go first when a limit is
//   reached
#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace bacnet::log {

inline constexpr std::uint64_t Megabyte = 1024 * 1024;
inline constexpr std::uint64_t NoLimit = UINT64_MAX;

// Online log. With a limit, the two files together stay within it: each is started over at half of it.
class OnlineFile {
public:
    // Starts a session: what the file held becomes the old file.
    bool Open(const std::filesystem::path& folder);
    void Close() { m_stream.close(); }
    bool IsOpen() const { return m_stream.is_open(); }
    void SetLimit(std::uint64_t bytes) { m_limit = bytes; }
    bool Append(std::string_view line); // false: the system refused (a full disk)

private:
    bool StartOver();

    std::filesystem::path m_folder;
    std::ofstream m_stream;
    std::uint64_t m_size = 0;
    std::uint64_t m_limit = NoLimit;
};

// Historical log: one or more files a session, all sessions together within the limits.
class HistoryFiles {
public:
    // Starts a session with the number behind the last one found in the folder.
    bool Open(const std::filesystem::path& folder);
    void Close() { m_stream.close(); }
    bool IsOpen() const { return m_stream.is_open(); }
    void SetLimits(std::uint64_t bytes, std::uint64_t sessions);
    bool Append(std::string_view line);

private:
    struct Part {
        unsigned Session;
        unsigned Number;
        std::uint64_t Size;
    };

    std::filesystem::path PathOf(const Part& part) const;
    std::uint64_t PartLimit() const;
    void FindParts();
    bool StartPart(unsigned session, unsigned number);
    void Prune();

    std::filesystem::path m_folder;
    std::ofstream m_stream;
    std::deque<Part> m_parts; // oldest first; the last one is being written
    std::uint64_t m_limit = NoLimit;
    std::uint64_t m_sessionLimit = NoLimit;
};

} // namespace bacnet::log
