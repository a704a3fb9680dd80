// Room on the stack for the parameters of one request: as much as any link carries in one APDU. A request that is
// longer overflows the writer, and is not sent.
#pragma once

#include "platform/stack/codec/Writer.h"
#include "platform/stack/network/Apdu.h"

#include <cstdint>

namespace bacnet {

class RequestBuffer {
public:
    RequestBuffer() : Out({&m_octets[0], sizeof m_octets}) {}
    RequestBuffer(const RequestBuffer&) = delete;
    RequestBuffer& operator=(const RequestBuffer&) = delete;

private:
    std::uint8_t m_octets[MAX_APDU_IP]; // uninitialised

public:
    Writer Out;
};

} // namespace bacnet
