#include "tests/integration/DeviceSite.h"

DeviceSite::~DeviceSite() {
    BACnet = nullptr;
}

void DeviceSite::Start(std::vector<sim::DeviceConfig> devices) {
    sim::SimulatorConfig config;
    config.Port = m_block.Port();
    config.Devices = std::move(devices);
    for (unsigned i = 0; i < config.Devices.size(); ++i)
        config.Devices[i].Ip = m_block.Ip(1 + i);
    m_simulator = std::make_unique<sim::Simulator>(config);
    std::string failure;
    ASSERT_TRUE(m_simulator->Start(failure)) << failure;

    bacnet::ClientConfig client;
    client.Transactions.TimeoutMs = 100;
    client.Transactions.Retries = 0;
    client.Ports.push_back({0, m_block.Text(250), m_block.Port(), "127.255.255.255"});
    m_client = bacnet::BacnetClient::Open(client, failure);
    ASSERT_TRUE(m_client) << failure;
    BACnet = m_client.get();
    for (std::size_t i = 0; i < config.Devices.size(); ++i) {
        const sim::DeviceConfig& device = config.Devices[i];
        m_addresses[device.Instance] = m_simulator->AddressOf(i);
        BACSTAC_ADDRESS former{};
        m_client->Directory().Learn(
            {device.Instance, device.MaxApdu, static_cast<std::uint32_t>(device.Segmentation), device.VendorId},
            m_addresses[device.Instance], former);
    }
}
