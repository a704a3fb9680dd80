// A capture file of frames that are not sent: what the encoders of the stack make, to be read by another decoder.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "platform/stack/transport/Capture.h"
#include "tests/interop/Frames.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace interop {

class Recording {
public:
    static constexpr std::uint16_t UDP_PORT = 47808;
    // Of the APDU in a packet of AddApdu: headers of IP and UDP, BVLL and an NPDU of two octets.
    static constexpr std::size_t APDU_POSITION = 20 + 8 + 4 + 2;

    Recording();
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    void AddDatagram(std::span<const std::uint8_t> datagram);
    // An APDU between two stations of one network. parameters: what stands behind its header.
    void AddApdu(const bacnet::Apdu& header, std::span<const std::uint8_t> parameters);
    std::size_t Count() const { return m_count; }

    std::vector<Frame> DecodeAll();
    void DecodeEach(const std::string& layer, const std::function<void(const Frame&)>& take);

private:
    std::filesystem::path m_folder;
    std::shared_ptr<bacnet::Capture> m_capture;
    std::size_t m_count = 0;
};

} // namespace interop
