#include "platform/stack/transport/Capture.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <system_error>
#include <utility>

#if !defined(_WIN32)
#include <fcntl.h>
#include <unistd.h>
#endif

namespace bacnet {

namespace {

constexpr std::uint32_t MAGIC = 0xA1B2C3D4; // microseconds; its octet order tells that of the other numbers
constexpr std::uint32_t LINKTYPE_RAW = 101;
constexpr std::uint32_t SNAPSHOT_LENGTH = 65535;
constexpr std::size_t FILE_HEADER = 24;
constexpr std::size_t RECORD_HEADER = 16;
constexpr std::size_t IP_HEADER = 20; // RFC 791, without options
constexpr std::size_t UDP_HEADER = 8; // RFC 768
constexpr std::size_t HEADERS = RECORD_HEADER + IP_HEADER + UDP_HEADER;
constexpr std::size_t MAX_PAYLOAD = 2048; // no datagram that is received or sent is longer

// Octets one behind the other. The headers of the file are written with the least significant octet first, those of
// the network with the most significant one.
template <std::size_t SIZE>
class Octets {
public:
    void File32(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            Add(value >> shift);
    }
    void File16(std::uint32_t value) {
        Add(value);
        Add(value >> 8);
    }
    void Net16(std::uint32_t value) {
        Add(value >> 8);
        Add(value);
    }
    void Net32(std::uint32_t value) {
        Net16(value >> 16);
        Net16(value & 0xFFFF);
    }
    void Add(std::uint32_t octet) { m_octets[m_size++] = static_cast<std::uint8_t>(octet); }
    void Add(std::span<const std::uint8_t> octets) {
        std::ranges::copy(octets, m_octets.begin() + static_cast<std::ptrdiff_t>(m_size));
        m_size += octets.size();
    }
    std::span<const std::uint8_t> All() const { return {m_octets.data(), m_size}; }

private:
    std::array<std::uint8_t, SIZE> m_octets;
    std::size_t m_size = 0;
};

constexpr std::uint32_t VERSION_AND_LENGTH = 0x4500;
constexpr std::uint32_t DONT_FRAGMENT = 0x4000;
constexpr std::uint32_t LIFETIME_AND_UDP = 64U << 8 | 17;

// RFC 1071, of the header that has these fields and no others that are not zero.
std::uint32_t IpChecksum(std::uint32_t length, std::uint32_t from, std::uint32_t to) {
    std::uint32_t sum = VERSION_AND_LENGTH + length + DONT_FRAGMENT + LIFETIME_AND_UDP + (from >> 16) +
                        (from & 0xFFFF) + (to >> 16) + (to & 0xFFFF);
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return ~sum & 0xFFFF;
}

// Makes the file empty and readable by its owner only from the start: whoever opened an earlier one reads nothing of
// this one. Devices, pipes and folders are left as they are.
bool Create(const std::filesystem::path& file) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_type type = fs::symlink_status(file, error).type();
    if (type == fs::file_type::regular || type == fs::file_type::symlink)
        fs::remove(file, error);
#if defined(_WIN32)
    return !fs::exists(file, error); // who may read it is the folder's matter there
#else
    const int made = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    return made >= 0 && ::close(made) == 0;
#endif
}

} // namespace

std::shared_ptr<Capture> Capture::Open(Settings settings, std::string& failure) {
    std::shared_ptr<Capture> capture(new Capture(std::move(settings)));
    const std::filesystem::path& file = capture->m_settings.File;
    const bool created = FILE_HEADER <= capture->m_settings.Limit && Create(file);
    // Each record is one write, so that the file holds what was recorded, however the process ends.
    capture->m_file.rdbuf()->pubsetbuf(nullptr, 0);
    if (created)
        capture->m_file.open(file, std::ios::binary | std::ios::trunc);
    Octets<FILE_HEADER> header;
    header.File32(MAGIC);
    header.File16(2); // version 2.4
    header.File16(4);
    header.File32(0); // times are UTC
    header.File32(0);
    header.File32(SNAPSHOT_LENGTH);
    header.File32(LINKTYPE_RAW);
    if (!capture->m_file.is_open() || !capture->Write(header.All())) {
        failure = "the capture file \"" + file.string() + "\" cannot be written";
        return nullptr;
    }
    return capture;
}

void Capture::Record(const BipAddress& from, const BipAddress& to, std::span<const std::uint8_t> datagram) {
    using namespace std::chrono;
    datagram = datagram.first(std::min(datagram.size(), MAX_PAYLOAD));
    const auto packet = static_cast<std::uint32_t>(IP_HEADER + UDP_HEADER + datagram.size());
    const std::string* reason = nullptr;
    static const std::string full = "the capture file has reached its limit";
    static const std::string refused = "the capture file cannot be written any more";
    {
        const std::lock_guard lock(m_lock);
        if (!m_file.is_open())
            return;
        // Taken under the lock: times never go back in the file unless the clock does.
        const auto now =
            duration_cast<microseconds>((m_settings.Now ? m_settings.Now() : system_clock::now()).time_since_epoch());
        Octets<HEADERS + MAX_PAYLOAD> record;
        record.File32(static_cast<std::uint32_t>(now.count() / 1'000'000));
        record.File32(static_cast<std::uint32_t>(now.count() % 1'000'000));
        record.File32(packet);
        record.File32(packet);
        record.Net16(VERSION_AND_LENGTH);
        record.Net16(packet);
        record.Net16(0);
        record.Net16(DONT_FRAGMENT);
        record.Net16(LIFETIME_AND_UDP);
        record.Net16(IpChecksum(packet, from.Ip, to.Ip));
        record.Net32(from.Ip);
        record.Net32(to.Ip);
        record.Net16(from.Port);
        record.Net16(to.Port);
        record.Net16(static_cast<std::uint32_t>(UDP_HEADER + datagram.size()));
        record.Net16(0); // no checksum
        record.Add(datagram);
        if (m_length + record.All().size() > m_settings.Limit)
            reason = &full;
        else if (!Write(record.All()))
            reason = &refused;
        if (reason != nullptr)
            m_file.close();
    }
    if (reason != nullptr && m_settings.OnEnd)
        m_settings.OnEnd(*reason);
}

bool Capture::Write(std::span<const std::uint8_t> octets) {
    m_file.write(reinterpret_cast<const char*>(octets.data()), static_cast<std::streamsize>(octets.size()));
    if (m_file) {
        m_length += octets.size();
        return true;
    }
    // A disk that is full may have taken a part.
    std::error_code error;
    std::filesystem::resize_file(m_settings.File, m_length, error);
    return false;
}

} // namespace bacnet
