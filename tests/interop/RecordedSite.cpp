#include "tests/interop/RecordedSite.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace interop {

RecordedSite::RecordedSite() {
    std::string folder = (std::filesystem::temp_directory_path() / "bdc-interop-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    m_folder = folder;
}

RecordedSite::~RecordedSite() {
    m_client.reset();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

void RecordedSite::SetUp() {
    if (!HasDecoder())
        GTEST_SKIP() << "tshark is not installed: nothing decodes the frames independently";
    sim::Counts counts;
    counts.Devices = 3;
    counts.Points = 12;
    counts.Trends = 2;
    counts.Multiples = 1;
    counts.Records = 40;
    counts.StatusEvery = 7;
    counts.FirstIp = m_block.Ip(10);
    counts.Port = m_block.Port();
    counts.Networks = {7};
    counts.RoutedDevices = 1;
    sim::SimulatorConfig site = sim::GenerateConfig(counts);
    site.Devices[1].MaxApdu = 206;
    site.Devices[2].ProtocolRevision = 2;
    for (sim::DeviceConfig& device : site.Devices)
        for (sim::ObjectConfig& object : device.Objects)
            if (object.Log && object.Log->Generator)
                for (std::uint32_t& kind : object.Log->Generator->Kinds)
                    kind = sim::MIXED_KINDS;
    Describe(site);
    m_simulator = std::make_unique<sim::Simulator>(std::move(site));
    std::string failure;
    ASSERT_TRUE(m_simulator->Start(failure)) << failure;

    bacnet::ClientConfig config;
    config.Ports.push_back({0, m_block.Text(1), m_block.Port(), "127.255.255.255"});
    config.Transactions.TimeoutMs = 1000;
    config.CaptureFile = (m_folder / "frames.pcap").string();
    m_client = bacnet::BacnetClient::Open(config, failure);
    ASSERT_NE(m_client, nullptr) << failure;
    const BACSTAC_ADDRESS everybody{1, 0, BACSTAC_ALL_NETWORKS, {}, 0};
    ASSERT_EQ(m_client->WhoIs(everybody, IP_DEVICE, ROUTED_DEVICE), BACSTAC_OK);
    std::vector<unsigned> found;
    for (int wait = 0; wait < 500 && found.size() < m_simulator->DeviceCount(); ++wait) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        m_client->GetDevLst(found, BACSTAC_ALL_NETWORKS);
    }
    ASSERT_EQ(found.size(), m_simulator->DeviceCount());
}

const std::vector<Frame>& RecordedSite::Frames() {
    if (m_frames.empty()) {
        m_client.reset();
        m_frames = Decode(m_folder / "frames.pcap", m_block.Port());
        for (std::size_t i = 0; i < m_frames.size(); ++i) {
            if (IsExempt(m_frames[i]))
                continue;
            EXPECT_EQ(Objection(m_frames[i]), "") << "frame " << i + 1 << "\n" << m_frames[i].Text();
        }
    }
    return m_frames;
}

std::vector<Frame> RecordedSite::Requests(int service) {
    std::vector<Frame> found;
    for (const Frame& frame : Frames())
        if (frame.First("bacapp.type") == "0" &&
            (service == ANY_SERVICE || frame.First("bacapp.confirmed_service") == std::to_string(service)))
            found.push_back(frame);
    return found;
}

std::vector<Frame> RecordedSite::Answers(const Frame& request) {
    std::vector<Frame> found;
    for (const Frame& frame : Frames())
        if (frame.First("bacapp.type") != "0" && frame.First("bacapp.type") != "1" &&
            frame.First("bacapp.invoke_id") == request.First("bacapp.invoke_id") &&
            frame.First("ip.src") == request.First("ip.dst"))
            found.push_back(frame);
    return found;
}

} // namespace interop
