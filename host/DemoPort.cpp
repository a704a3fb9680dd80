#include "host/DemoPort.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstring>

namespace {

constexpr std::uint16_t BACNET_PORT = 47808;
constexpr int PORTS_TO_TRY = 200;

// Whether a socket can be bound to the port without sharing it, on all addresses.
bool IsFree(std::uint16_t port) {
    const CFileDescriptor probe(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    return probe && bind(probe.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

} // namespace

// The claim is a socket in the abstract namespace, which the system releases with the process, however it ends.
bool CDemoPort::TryClaim(std::uint16_t port) {
    CFileDescriptor claim(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = "bdc-demo-" + std::to_string(port);
    name.copy(address.sun_path + 1, name.size());
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    if (!claim || bind(claim.Get(), reinterpret_cast<const sockaddr*>(&address), length) != 0 || !IsFree(port))
        return false;
    m_claim = std::move(claim);
    m_number = port;
    return true;
}

bool CDemoPort::Claim(std::uint16_t wanted, std::string& error) {
    const std::uint16_t first = wanted != 0 ? wanted : BACNET_PORT;
    for (int i = 0; i < (wanted != 0 ? 1 : PORTS_TO_TRY); ++i) {
        if (TryClaim(static_cast<std::uint16_t>(first + i)))
            return true;
    }
    error = wanted != 0 ? "UDP port " + std::to_string(wanted) + " is in use" : std::string("no UDP port is free");
    return false;
}
