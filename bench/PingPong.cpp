#include "bench/PingPong.h"

#include "bench/Child.h"

#include <arpa/inet.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>

namespace bench {
namespace {

constexpr std::size_t kMaxDatagram = 1500;

struct Endpoint {
    int fd;
    sockaddr_in address;
};

Endpoint Open() {
    Endpoint endpoint{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0), {}};
    endpoint.address.sin_family = AF_INET;
    endpoint.address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof endpoint.address;
    if (bind(endpoint.fd, reinterpret_cast<sockaddr*>(&endpoint.address), length) != 0 ||
        getsockname(endpoint.fd, reinterpret_cast<sockaddr*>(&endpoint.address), &length) != 0)
        std::abort();
    return endpoint;
}

[[noreturn]] void Answer(int fd, std::size_t size) {
    std::array<char, kMaxDatagram> buffer{};
    for (;;) {
        sockaddr_in from{};
        socklen_t length = sizeof from;
        if (recvfrom(fd, buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&from), &length) > 0)
            sendto(fd, buffer.data(), size, 0, reinterpret_cast<sockaddr*>(&from), length);
    }
}

} // namespace

void PinThread(int processor) {
    if (processor < 0)
        return;
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    sched_setaffinity(0, sizeof set, &set);
}

double PingPongRate(Pinning pinning, int outstanding, double seconds, TripSizes sizes) {
    using Clock = std::chrono::steady_clock;
    const Endpoint server = Open();
    const Endpoint client = Open();
    const Child child([&] {
        PinThread(pinning.server);
        Answer(server.fd, sizes.answer);
    });
    const PinnedScope pinned(pinning.client);

    std::array<char, kMaxDatagram> buffer{};
    const auto send = [&] {
        sendto(client.fd, buffer.data(), sizes.request, 0, reinterpret_cast<const sockaddr*>(&server.address),
               sizeof server.address);
    };
    for (int i = 0; i < outstanding; ++i)
        send();
    std::uint64_t trips = 0;
    const auto start = Clock::now();
    const auto end = start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    while ((trips & 0xFF) != 0 || Clock::now() < end) {
        sockaddr_in from{};
        socklen_t length = sizeof from;
        recvfrom(client.fd, buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&from), &length);
        send();
        ++trips;
    }
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    close(client.fd);
    close(server.fd);
    return static_cast<double>(trips) / elapsed.count();
}

} // namespace bench
