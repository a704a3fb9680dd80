// Records the datagrams of BACnet/IP ports in a file that network analysers open: classic pcap with microsecond times,
// link type 101 (raw IP), IPv4 and UDP headers made from the socket addresses.
//
// Any thread records at any time. The file is never longer than its limit: the first datagram that does not fit, or
// that the system refuses to write, ends the recording for good and leaves a file of whole records.
#pragma once

#include "platform/stack/transport/Bvll.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>

namespace bacnet {

class Capture {
public:
    static constexpr std::uint64_t DEFAULT_LIMIT = 64U * 1024 * 1024; // octets of the file

    struct Settings {
        std::filesystem::path File; // an earlier one is overwritten
        std::uint64_t Limit = DEFAULT_LIMIT;
        // Called once, by the thread that recorded last, with the reason why nothing is recorded any more.
        std::function<void(const std::string& reason)> OnEnd;
        std::function<std::chrono::system_clock::time_point()> Now; // empty: the system's
    };

    // Null, with the reason in failure, when the file cannot be made; nothing but a file is overwritten. Only its owner
    // may read it: passwords of services travel in clear.
    static std::shared_ptr<Capture> Open(Settings settings, std::string& failure);

    // An Ip of 0 is recorded as 0.0.0.0: a port that is bound to all addresses does not know its own.
    void Record(const BipAddress& from, const BipAddress& to, std::span<const std::uint8_t> datagram);

private:
    explicit Capture(Settings settings) : m_settings(std::move(settings)) {}
    bool Write(std::span<const std::uint8_t> octets); // m_lock held

    const Settings m_settings;
    std::mutex m_lock;
    std::ofstream m_file;       // m_lock; closed when the recording has ended
    std::uint64_t m_length = 0; // m_lock; of the file, whole records only
};

} // namespace bacnet
