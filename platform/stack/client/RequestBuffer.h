// Room for the parameters of one request, more than one APDU carries: what does not fit into one goes in segments,
// where the device takes them. A request that is longer still overflows the writer, and is not sent.
#pragma once

#include "platform/stack/codec/Writer.h"

#include <cstdint>
#include <memory>

namespace bacnet {

class RequestBuffer {
public:
    static constexpr std::size_t SIZE = 128 * 1024; // as the largest contents

    RequestBuffer() : m_octets(new std::uint8_t[SIZE]), Out({m_octets.get(), SIZE}) {}
    RequestBuffer(const RequestBuffer&) = delete;
    RequestBuffer& operator=(const RequestBuffer&) = delete;

private:
    std::unique_ptr<std::uint8_t[]> m_octets; // uninitialised

public:
    Writer Out;
};

} // namespace bacnet
