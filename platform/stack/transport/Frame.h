// A frame on its way out. The APDU is appended first; each lower layer puts its header in front of it, so that nothing
// is copied on the way down. Lives on the sender's stack or in a pool; its storage is left uninitialised on purpose.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace bacnet {

class Frame {
public:
    // Room for the headers of the network layer (at most 40 octets) and of the data link.
    static constexpr std::size_t HEADROOM = 64;
    // The longest NPDU of any local network that sends in one frame (BACnet/IP, clause 6 table 6-1), rounded up.
    static constexpr std::size_t CAPACITY = 1500;

    Frame() = default; // not "{}": the octets stay uninitialised
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    void Clear() { m_begin = m_end = HEADROOM; }
    const std::uint8_t* Data() const { return m_octets + m_begin; }
    std::size_t Size() const { return m_end - m_begin; }
    std::span<const std::uint8_t> Octets() const { return {Data(), Size()}; }
    std::size_t Room() const { return sizeof(m_octets) - m_end; }

    // Uninitialised octets behind what is there, or in front of it; null when there is no room.
    std::uint8_t* Append(std::size_t count) {
        if (count > Room())
            return nullptr;
        std::uint8_t* at = m_octets + m_end;
        m_end += count;
        return at;
    }
    std::uint8_t* Prepend(std::size_t count) {
        if (count > m_begin)
            return nullptr;
        m_begin -= count;
        return m_octets + m_begin;
    }
    bool Append(std::span<const std::uint8_t> octets) {
        std::uint8_t* at = Append(octets.size());
        if (at == nullptr)
            return false;
        if (!octets.empty())
            std::memcpy(at, octets.data(), octets.size());
        return true;
    }
    // Takes back what lower layers put in front, to send the same APDU elsewhere. size is Size() as it was before.
    void DropHeaders(std::size_t size) { m_begin = m_end - size; }

private:
    std::size_t m_begin = HEADROOM;
    std::size_t m_end = HEADROOM;
    std::uint8_t m_octets[HEADROOM + CAPACITY];
};

} // namespace bacnet
