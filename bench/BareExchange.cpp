#include "bench/BareExchange.h"

#include "bench/Rate.h"
#include "bench/Site.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace bench {

Datagram BareRequest(bacnet::ConfirmedService service, std::span<const std::uint8_t> parameters) {
    constexpr std::size_t kHead = 10;
    Datagram request(kHead + parameters.size());
    const auto size = static_cast<std::uint16_t>(request.size());
    const std::array<std::uint8_t, kHead> head{0x81,
                                               0x0A,
                                               static_cast<std::uint8_t>(size >> 8),
                                               static_cast<std::uint8_t>(size),
                                               1,
                                               4, // the network layer: an answer is expected
                                               2,
                                               5, // confirmed request, takes segments, up to 1476 octets
                                               1,
                                               static_cast<std::uint8_t>(service)};
    std::ranges::copy(head, request.begin());
    std::ranges::copy(parameters, request.begin() + kHead);
    return request;
}

double BareRate(const sim::SimulatorConfig& site, const std::vector<Datagram>& requests) {
    constexpr double kSeconds = 1.0;
    const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in device{};
    device.sin_family = AF_INET;
    device.sin_addr.s_addr = htonl(site.Devices[0].Ip);
    device.sin_port = htons(site.Port);
    const timeval patience{1, 0};
    if (setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) != 0 ||
        connect(fd, reinterpret_cast<const sockaddr*>(&device), sizeof device) != 0)
        Fail("no socket");
    std::array<char, 1500> answer{};
    const double rate = CallRate(kSeconds, [&] {
        for (const Datagram& request : requests)
            if (send(fd, request.data(), request.size(), 0) < 0 || recv(fd, answer.data(), answer.size(), 0) < 0)
                Fail("the device does not answer");
    });
    close(fd);
    return rate;
}

} // namespace bench
