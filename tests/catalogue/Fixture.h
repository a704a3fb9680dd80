// The station of the catalogue's tests, on real UDP, and its devices.
#pragma once

#include "tests/catalogue/Entry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

namespace catalogue {

class Fixture : public testing::Test {
protected:
    static constexpr unsigned STATION_HOST = 1;
    static constexpr unsigned GOOD_HOST = 2; // a device that always answers
    static constexpr unsigned INSTANCE_OF_HOST_0 = 1000;
    static constexpr unsigned NETWORK_OF_HOST_0 = 300;

    Fixture() {
        bacnet::ClientConfig config;
        bacnet::ClientPort port;
        port.BindAddress = m_block.Text(STATION_HOST);
        port.UdpPort = m_block.Port();
        config.Ports.push_back(port);
        config.Transactions.TimeoutMs = TIMEOUT_MS;
        config.Transactions.Retries = 1;
        config.Transactions.SegmentTimeoutMs = SEGMENT_TIMEOUT_MS;
        config.Transactions.AnswerTimeoutMs = ANSWER_TIMEOUT_MS;
        std::string failure;
        m_client = bacnet::BacnetClient::Open(config, failure);
        if (!m_client)
            throw std::runtime_error(failure);
        BACnet = m_client.get();
        Open(GOOD_HOST, FromText("-"));
        m_peers.Behave(GOOD_HOST);
    }
    ~Fixture() override { BACnet = nullptr; }

    BACSTAC_ADDRESS Address(unsigned host) const {
        const std::uint32_t ip = m_block.Ip(host);
        const std::uint32_t port = m_block.Port();
        BACSTAC_ADDRESS address{};
        const std::array<std::uint32_t, 6> octets{ip >> 24, ip >> 16, ip >> 8, ip, port >> 8, port};
        std::transform(octets.begin(), octets.end(), address.Mac,
                       [](std::uint32_t octet) { return static_cast<std::uint8_t>(octet); });
        address.MacLength = 6;
        return address;
    }
    Target TargetOf(unsigned host) { return {*m_client, INSTANCE_OF_HOST_0 + host, Address(host)}; }
    // The device is behind a router, which has the address that it would have itself.
    static BACSTAC_ADDRESS RoutedAddress(unsigned host) {
        BACSTAC_ADDRESS address{};
        address.Remote = 1;
        address.Network = static_cast<std::uint16_t>(NETWORK_OF_HOST_0 + host);
        address.Mac[0] = 7;
        address.MacLength = 1;
        return address;
    }
    Target RoutedTargetOf(unsigned host) { return {*m_client, INSTANCE_OF_HOST_0 + host, RoutedAddress(host)}; }
    void OpenRouted(unsigned host, Script script) {
        m_peers.Open(host, std::move(script));
        const BACSTAC_ADDRESS address = RoutedAddress(host);
        m_peers.AnnounceNetwork(host, STATION_HOST, address.Network);
        EXPECT_TRUE(m_client->Transactions().Network().WaitForRoute(address.Network, 10000));
        Know(host, address);
    }
    void Know(unsigned host, const BACSTAC_ADDRESS& address) {
        BACSTAC_ADDRESS former{};
        m_client->Directory().Learn({INSTANCE_OF_HOST_0 + host, 1476, 3, 260}, address, former);
    }
    void Open(unsigned host, Script script) {
        m_peers.Open(host, std::move(script));
        Know(host, Address(host));
    }

    testing_support::LoopbackBlock m_block;
    RawPeers m_peers{m_block};
    std::unique_ptr<bacnet::BacnetClient> m_client;
};

} // namespace catalogue
