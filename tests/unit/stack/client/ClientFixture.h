// A real client over a scripted link, with devices that the test writes.
#pragma once

#include "platform/stack/client/BacnetClient.h"
#include "tests/unit/stack/client/ScriptedLink.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>

class ClientFixture : public testing::Test {
protected:
    static constexpr std::uint32_t TimeoutMs = 60;
    static constexpr std::uint8_t Retries = 1;

    ClientFixture() { Restart({}); }
    ~ClientFixture() override {
        if (BACnet == m_client.get())
            BACnet = nullptr;
    }

    void Restart(const bacnet::OwnDevice& device, const std::map<std::uint32_t, std::string>& textEncodings = {}) {
        bacnet::ClientConfig config;
        config.Transactions.TimeoutMs = TimeoutMs;
        config.Transactions.Retries = Retries;
        config.Transactions.RouterWaitMs = 100;
        config.Device = device;
        config.TextEncodings = textEncodings;
        auto link = std::make_unique<ScriptedLink>();
        m_link = link.get();
        std::vector<bacnet::ClientLink> links;
        links.push_back({std::move(link), 0});
        m_client = std::make_unique<bacnet::BacnetClient>(config, std::move(links));
        BACnet = m_client.get();
    }

    // Device instance 100 + last at 127.0.0.last, known as if by an I-Am with this APDU size.
    void Know(std::uint8_t last, std::uint32_t maxApdu = 1476) {
        BACSTAC_ADDRESS former{};
        m_client->Directory().Learn({DeviceAt(last), maxApdu, 3, 260}, Address(last), former);
    }
    void Serve(std::uint8_t last, ScriptedLink::Device device) {
        Know(last);
        m_link->SetDevice(last, std::move(device));
    }
    // A device that gives this answer (from the PDU type on; octet 1 becomes the invoke id) to every request.
    void ServeAlways(std::uint8_t last, const char* answer) {
        Serve(last,
              [octets = Hex(answer)](const Octets& request) { return std::vector<Octets>{WithId(octets, request)}; });
    }

    static unsigned DeviceAt(std::uint8_t last) { return 100U + last; }
    static BACSTAC_ADDRESS Address(std::uint8_t last) { return {0, 0, 0, {127, 0, 0, last, 0xBA, 0xC0}, 6}; }
    static Octets WithId(Octets answer, const Octets& request) {
        answer.at(1) = request.at(2);
        return answer;
    }
    // What stands behind the header of an unsegmented confirmed request.
    static Octets Parameters(const Octets& request) { return {request.begin() + 4, request.end()}; }
    static std::uint8_t Service(const Octets& request) { return request.at(3); }
    // A ComplexACK to the request.
    static Octets Ack(const Octets& request, std::span<const std::uint8_t> parameters) {
        Octets answer(3 + parameters.size());
        answer[0] = 0x30;
        answer[1] = request.at(2);
        answer[2] = request.at(3);
        std::copy(parameters.begin(), parameters.end(), answer.begin() + 3);
        return answer;
    }

    std::unique_ptr<bacnet::BacnetClient> m_client;
    ScriptedLink* m_link = nullptr;
};
