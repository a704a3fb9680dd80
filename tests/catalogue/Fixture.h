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
    void Open(unsigned host, Script script) {
        m_peers.Open(host, std::move(script));
        BACSTAC_ADDRESS former{};
        m_client->Directory().Learn({INSTANCE_OF_HOST_0 + host, 1476, 3, 260}, Address(host), former);
    }

    testing_support::LoopbackBlock m_block;
    RawPeers m_peers{m_block};
    std::unique_ptr<bacnet::BacnetClient> m_client;
};

} // namespace catalogue
