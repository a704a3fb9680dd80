// The octets of the fuzzer as numbers and runs of octets. Beyond the end there are zeros and empty runs.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_rest(data, size) {}

    bool AtEnd() const { return m_rest.empty(); }
    std::uint8_t Octet() {
        if (m_rest.empty())
            return 0;
        const std::uint8_t octet = m_rest.front();
        m_rest = m_rest.subspan(1);
        return octet;
    }
    // As many as the next two octets say, and no more than there are.
    std::span<const std::uint8_t> Run() {
        const std::size_t low = Octet();
        const std::size_t length = std::min<std::size_t>(low + Octet() * std::size_t{256}, m_rest.size());
        const auto run = m_rest.first(length);
        m_rest = m_rest.subspan(length);
        return run;
    }

private:
    std::span<const std::uint8_t> m_rest;
};
