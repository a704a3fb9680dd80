#include "tests/interop/Recording.h"

#include "platform/stack/network/Npdu.h"
#include "platform/stack/transport/Bvll.h"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

namespace interop {

using namespace bacnet;

namespace {

constexpr BipAddress FROM{0x7F000001, Recording::UDP_PORT};
constexpr BipAddress TO{0x7F000002, Recording::UDP_PORT};
constexpr std::uint64_t LIMIT = 1U << 30;

} // namespace

Recording::Recording() {
    std::string folder = (std::filesystem::temp_directory_path() / "bdc-recording-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    m_folder = folder;
    Capture::Settings settings;
    settings.File = m_folder / "frames.pcap";
    settings.Limit = LIMIT;
    std::string failure;
    m_capture = Capture::Open(std::move(settings), failure);
    if (!m_capture)
        throw std::runtime_error(failure);
}

Recording::~Recording() {
    m_capture.reset();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

void Recording::AddDatagram(std::span<const std::uint8_t> datagram) {
    m_capture->Record(FROM, TO, datagram);
    ++m_count;
}

void Recording::AddApdu(const Apdu& header, std::span<const std::uint8_t> parameters) {
    Npdu npdu;
    npdu.ExpectingReply = header.Type == PduType::confirmed_request;
    bacnet::Frame frame;
    if (!frame.Append(parameters) || !PrependApdu(frame, header) || !PrependNpdu(frame, npdu) ||
        !PrependBvll(frame, BvlcFunction::original_unicast))
        throw std::length_error("no room for the frame");
    AddDatagram(frame.Octets());
}

std::vector<Frame> Recording::DecodeAll() {
    return Decode(m_folder / "frames.pcap", UDP_PORT);
}

void Recording::DecodeEach(const std::string& layer, const std::function<void(const Frame&)>& take) {
    interop::DecodeEach(m_folder / "frames.pcap", UDP_PORT, layer, take);
}

} // namespace interop
