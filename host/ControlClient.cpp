#include "host/ControlClient.h"

#include "host/ControlSocket.h"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>

namespace {

ControlReply Failed(std::string error) {
    return {EXIT_FAILED, std::move(error), {}};
}

} // namespace

bool CControlClient::HasInstance(const std::string& folder) {
    const CFileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return socket && WithControlAddress(folder, socket.Get(), connect) == 0;
}

ControlReply CControlClient::Ask(const std::string& folder, const ControlRequest& request,
                                 const std::function<void(const std::string&)>& onRow,
                                 std::chrono::milliseconds silence) {
    const CFileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket)
        return Failed(ErrnoText(folder, "no socket"));
    if (WithControlAddress(folder, socket.Get(), connect) != 0) {
        if (errno == ENOENT || errno == ECONNREFUSED)
            return Failed(folder + ": no instance is running here");
        return Failed(ErrnoText(folder, "the instance cannot be reached"));
    }
    const std::string line = EncodeRequest(request);
    if (line.size() > MAX_CONTROL_REQUEST)
        return Failed("the request is too long");
    SendAll(socket.Get(), line, ControlClock::now() + silence);

    std::string bytes;
    for (;;) {
        for (std::size_t begin = 0, end = 0;; begin = end + 1) {
            end = bytes.find('\n', begin);
            if (end == std::string::npos) {
                bytes.erase(0, begin);
                break;
            }
            ControlLine decoded;
            std::string error;
            if (!DecodeLine(std::string_view(bytes).substr(begin, end - begin), decoded, error))
                return Failed("the instance gave an answer that cannot be read: " + error);
            if (!decoded.isRow)
                return decoded.reply;
            onRow(decoded.row);
        }
        if (bytes.size() > MAX_CONTROL_LINE)
            return Failed("the instance gave an answer that is too long");
        if (!WaitFor(socket.Get(), POLLIN, ControlClock::now() + silence))
            return Failed("the instance does not answer");
        char block[65536];
        const ssize_t count = recv(socket.Get(), block, sizeof block, 0);
        if (count == 0 || (count < 0 && errno != EINTR))
            return Failed("the instance closed the connection without an answer");
        if (count > 0)
            bytes.append(block, static_cast<std::size_t>(count));
    }
}
