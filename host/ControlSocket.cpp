#include "host/ControlSocket.h"

#include "host/ControlProtocol.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

int WithControlAddress(const std::string& folder, int socket, int (*function)(int, const struct sockaddr*, unsigned)) {
    const CFileDescriptor directory(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!directory)
        return -1;
    const std::string path = "/proc/self/fd/" + std::to_string(directory.Get()) + "/" + CONTROL_SOCKET_NAME;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return function(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

bool WaitFor(int descriptor, short events, ControlClock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - ControlClock::now()).count();
        pollfd entry{descriptor, events, 0};
        const int result = poll(&entry, 1, static_cast<int>(std::clamp<long long>(left, 0, 60000)));
        if (result > 0)
            return true;
        if ((result < 0 && errno != EINTR) || left <= 0)
            return false;
    }
}

bool SendAll(int socket, std::string_view bytes, ControlClock::time_point deadline) {
    while (!bytes.empty()) {
        const ssize_t count = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            if (!WaitFor(socket, POLLOUT, deadline))
                return false;
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}
