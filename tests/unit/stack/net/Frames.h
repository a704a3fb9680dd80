// Frames that the tests of the lower layers share, each with a comment that decodes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace frames {

using Octets = std::vector<std::uint8_t>;

// BVLL original unicast, 17 octets; NPDU version 1, expecting reply; confirmed request, segmented answer accepted, more
// than 64 segments, 1476 octets, invoke id 1, ReadProperty; analog-input 1, present-value.
inline const Octets READ_PROPERTY{0x81, 0x0A, 0x00, 0x11, 0x01, 0x04, 0x02, 0x75, 0x01,
                                  0x0C, 0x0C, 0x00, 0x00, 0x00, 0x01, 0x19, 0x55};
// BVLL original broadcast; NPDU for all networks, hop count 255; unconfirmed request, Who-Is without limits.
inline const Octets WHO_IS{0x81, 0x0B, 0x00, 0x0C, 0x01, 0x20, 0xFF, 0xFF, 0x00, 0xFF, 0x10, 0x08};
// BVLL forwarded NPDU from 10.0.1.5:47808; NPDU; I-Am of device 1234, 1476 octets, both segmentations, vendor 260.
inline const Octets FORWARDED_I_AM{0x81, 0x04, 0x00, 0x1A, 0x0A, 0x00, 0x01, 0x05, 0xBA, 0xC0, 0x01, 0x00, 0x10,
                                   0x00, 0xC4, 0x02, 0x00, 0x04, 0xD2, 0x22, 0x05, 0xC4, 0x91, 0x00, 0x21, 0x05};
// NPDU from station 7 of network 2001 through a router; complex ack, invoke id 5, ReadProperty; analog-input 1,
// present-value, real 100.0.
inline const Octets ROUTED_ACK{0x01, 0x08, 0x07, 0xD1, 0x01, 0x07, 0x30, 0x05, 0x0C, 0x0C, 0x00, 0x00,
                               0x00, 0x01, 0x19, 0x55, 0x3E, 0x44, 0x42, 0xC8, 0x00, 0x00, 0x3F};
// NPDU, network message I-Am-Router-To-Network: networks 2001 and 2002.
inline const Octets I_AM_ROUTER{0x01, 0x80, 0x01, 0x07, 0xD1, 0x07, 0xD2};

// Calls test for each proper prefix.
template <typename Test>
void CutAtEveryOctet(const Octets& whole, Test test) {
    for (std::size_t length = 0; length < whole.size(); ++length)
        test(std::span(whole).first(length));
}

} // namespace frames
