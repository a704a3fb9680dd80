// A bare UDP station for tests of the simulator: sends datagrams that are written out in hex and returns what comes, so
// that no line of the stack stands between the test and the simulator.
#pragma once

#include "platform/stack/transport/UdpSocket.h"
#include "tests/support/Loopback.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

namespace sim::testing {

using Octets = std::vector<std::uint8_t>;

// "81 0A 0011": hex digits, blanks anywhere.
inline Octets Hex(const std::string& text) {
    Octets octets;
    std::string digits;
    for (const char c : text)
        if (std::isxdigit(static_cast<unsigned char>(c)) != 0)
            digits.push_back(c);
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        octets.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    return octets;
}

inline std::string ToHex(std::span<const std::uint8_t> octets) {
    static const char DIGITS[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t octet : octets) {
        if (!text.empty())
            text.push_back(' ');
        text.push_back(DIGITS[octet >> 4]);
        text.push_back(DIGITS[octet & 15]);
    }
    return text;
}

// BVLL original unicast and NPDU without addresses in front of an APDU.
inline Octets Unicast(const std::string& apdu, const std::string& npdu = "01 04") {
    Octets frame = Hex("81 0A 00 00" + npdu + apdu);
    frame[2] = static_cast<std::uint8_t>(frame.size() >> 8);
    frame[3] = static_cast<std::uint8_t>(frame.size());
    return frame;
}

inline Octets Broadcast(const std::string& apdu, const std::string& npdu = "01 00") {
    Octets frame = Unicast(apdu, npdu);
    frame[1] = 0x0B;
    return frame;
}

class Station {
public:
    // How long a test waits for something that has to come, and for something that must not.
    static constexpr int LONG_MS = 5000;
    static constexpr int SHORT_MS = 60;

    explicit Station(const bacnet::BipAddress& address, bool shared = false) {
        bacnet::UdpSocket::Options options;
        options.ReceiveTimeoutMs = SHORT_MS;
        options.ReceiveBuffer = 4 * 1024 * 1024;
        options.Shared = shared;
        const std::string error = m_socket.Open(address, options);
        EXPECT_EQ(error, "");
    }

    void Send(const bacnet::BipAddress& to, const Octets& datagram) { EXPECT_TRUE(m_socket.Send(to, datagram)); }

    // The next datagram; empty when none came in time.
    Octets Receive(int timeoutMs = LONG_MS) {
        for (int waited = 0; waited < timeoutMs; waited += SHORT_MS) {
            if (m_socket.Receive(m_batch, 1, true) == 1) {
                m_from = m_batch.From(0);
                const auto octets = m_batch.Octets(0);
                return {octets.begin(), octets.end()};
            }
        }
        return {};
    }
    std::string ReceiveHex(int timeoutMs = LONG_MS) { return ToHex(Receive(timeoutMs)); }
    bool Silence() { return Receive(SHORT_MS).empty(); }
    const bacnet::BipAddress& From() const { return m_from; } // of the datagram received last

    // Sends and returns the answer.
    std::string Ask(const bacnet::BipAddress& to, const Octets& datagram) {
        Send(to, datagram);
        return ReceiveHex();
    }

private:
    bacnet::UdpSocket m_socket;
    bacnet::DatagramBatch m_batch;
    bacnet::BipAddress m_from;
};

} // namespace sim::testing
