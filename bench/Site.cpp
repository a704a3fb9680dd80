#include "bench/Site.h"

#include "bench/PingPong.h"
#include "simulator/Simulator.h"

#include <fmt/format.h>

#include <sys/types.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace bench {
namespace {

[[noreturn]] void Fail(const std::string& reason) {
    fmt::print(stderr, "bdc-bench: {}\n", reason);
    std::_Exit(2);
}

std::array<int, 2> OpenPipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        Fail("no pipe");
    return ends;
}

std::string DottedQuad(std::uint32_t ip) {
    return fmt::format("{}.{}.{}.{}", ip >> 24, ip >> 16 & 0xFF, ip >> 8 & 0xFF, ip & 0xFF);
}

} // namespace

std::uint32_t LoopbackBlock() {
    const auto process = static_cast<std::uint32_t>(getpid());
    return 0x7F000000U | (64 + process / 250 % 128) << 16 | (1 + process % 250) << 8 | 10;
}

SimulatedSite::SimulatedSite(const sim::Counts& counts, int processor)
    : m_ready(OpenPipe()), m_child([&] {
          PinThread(processor);
          sim::Simulator simulator(sim::GenerateConfig(counts));
          std::string error;
          if (!simulator.Start(error))
              Fail(error);
          if (write(m_ready[1], "!", 1) != 1)
              Fail("the pipe is gone");
          for (;;)
              pause();
      }) {
    char answer = 0;
    close(m_ready[1]);
    if (read(m_ready[0], &answer, 1) != 1)
        Fail("the simulated devices did not start");
    close(m_ready[0]);
}

std::unique_ptr<bacnet::BacnetClient> OpenClient(const sim::Counts& counts) {
    bacnet::ClientConfig config;
    config.Ports.push_back({0, DottedQuad(LoopbackBlock() - 9), counts.Port, "127.255.255.255"});
    std::string failure;
    auto client = bacnet::BacnetClient::Open(config, failure);
    if (!client)
        Fail(failure);
    std::uint32_t ip = counts.FirstIp;
    for (std::uint32_t i = 0; i < counts.Devices; ++i, ip = sim::NextIp(ip)) {
        BACSTAC_ADDRESS address{};
        for (unsigned octet = 0; octet < 4; ++octet)
            address.Mac[octet] = static_cast<std::uint8_t>(ip >> (24 - 8 * octet));
        address.Mac[4] = static_cast<std::uint8_t>(counts.Port >> 8);
        address.Mac[5] = static_cast<std::uint8_t>(counts.Port);
        address.MacLength = 6;
        BACSTAC_ADDRESS former{};
        client->Directory().Learn({counts.BaseInstance + i, counts.MaxApdu,
                                   static_cast<std::uint32_t>(bacnet::Segmentation::transmit),
                                   sim::DeviceConfig{}.VendorId},
                                  address, former);
    }
    return client;
}

} // namespace bench
