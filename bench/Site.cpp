#include "bench/Site.h"

#include "bench/PingPong.h"
#include "simulator/Simulator.h"

#include <fmt/format.h>

#include <sys/types.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <utility>

namespace bench {
namespace {

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

void Fail(const std::string& reason) {
    fmt::print(stderr, "bdc-bench: {}\n", reason);
    std::_Exit(2);
}

std::uint32_t LoopbackBlock() {
    const auto process = static_cast<std::uint32_t>(getpid());
    return 0x7F000000U | (64 + process / 250 % 128) << 16 | (1 + process % 250) << 8 | 10;
}

sim::SimulatorConfig OneDevice(std::uint32_t inputs) {
    sim::Counts counts;
    counts.Trends = 0;
    counts.Points = inputs;
    counts.OnlyReal = true;
    counts.FirstIp = LoopbackBlock();
    return sim::GenerateConfig(counts);
}

SimulatedSite::SimulatedSite(sim::SimulatorConfig config, int processor)
    : m_ready(OpenPipe()), m_child([&] {
          PinThread(processor);
          sim::Simulator simulator(std::move(config));
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

std::unique_ptr<bacnet::BacnetClient> OpenClient(const sim::SimulatorConfig& site,
                                                 const bacnet::TransactionSettings& transactions) {
    bacnet::ClientConfig config;
    config.Transactions = transactions;
    config.Ports.push_back({0, DottedQuad(LoopbackBlock() - 9), site.Port, "127.255.255.255"});
    std::string failure;
    auto client = bacnet::BacnetClient::Open(config, failure);
    if (!client)
        Fail(failure);
    for (const sim::DeviceConfig& device : site.Devices) {
        BACSTAC_ADDRESS address{};
        for (unsigned octet = 0; octet < 4; ++octet)
            address.Mac[octet] = static_cast<std::uint8_t>(device.Ip >> (24 - 8 * octet));
        address.Mac[4] = static_cast<std::uint8_t>(site.Port >> 8);
        address.Mac[5] = static_cast<std::uint8_t>(site.Port);
        address.MacLength = 6;
        BACSTAC_ADDRESS former{};
        client->Directory().Learn(
            {device.Instance, device.MaxApdu, static_cast<std::uint32_t>(device.Segmentation), device.VendorId},
            address, former);
    }
    return client;
}

std::unique_ptr<bacnet::BacnetClient> OpenClient(const sim::Counts& counts) {
    sim::Counts withoutRecords = counts; // the records of a large log take their time
    withoutRecords.Records = 0;
    return OpenClient(sim::GenerateConfig(withoutRecords));
}

} // namespace bench
