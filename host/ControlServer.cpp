#include "host/ControlServer.h"

#include "host/ControlSocket.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <list>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t REPLY_BLOCK = 64 << 10; // rows are collected to blocks of about this size

// A connection whose request has not arrived yet.
struct Waiting {
    CFileDescriptor socket;
    std::string bytes;
    ControlClock::time_point deadline;
};

bool IsOwnUser(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && (peer.uid == geteuid() || peer.uid == 0);
}

} // namespace

// One request being answered, on its own thread.
class CControlWorker : public IControlClient {
public:
    // wake: event descriptor that is raised when the request is answered.
    CControlWorker(CFileDescriptor socket, std::chrono::milliseconds replyTime, const std::atomic<bool>& stopping,
                   int wake)
        : m_socket(std::move(socket)), m_replyTime(replyTime), m_stopping(stopping), m_wake(wake) {}
    ~CControlWorker() override {
        if (m_thread.joinable())
            m_thread.join();
    }

    void Start(std::string line, const CControlServer::Handler& handler) {
        m_thread = std::thread([this, line = std::move(line), &handler] {
            Answer(line, handler);
            shutdown(m_socket.Get(), SHUT_RDWR);
            m_ended = true;
            eventfd_write(m_wake, 1);
        });
    }
    bool HasEnded() const { return m_ended; }
    // Makes every wait for the client end.
    void Cancel() { shutdown(m_socket.Get(), SHUT_RDWR); }

    bool Row(std::string_view json) override {
        m_block += EncodeRow(json);
        return m_block.size() < REPLY_BLOCK || FlushBlock();
    }

    bool IsCancelled() override {
        char byte = 0;
        return m_stopping || recv(m_socket.Get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0 || !FlushBlock();
    }

private:
    void Answer(const std::string& line, const CControlServer::Handler& handler) {
        ControlRequest request;
        ControlReply reply;
        if (DecodeRequest(line, request, reply.error)) {
            reply = handler(request, *this);
        } else {
            reply.code = EXIT_USAGE;
            reply.error = "bad request: " + reply.error;
        }
        m_block += EncodeReply(reply);
        FlushBlock();
        if (reply.then)
            reply.then();
    }

    bool FlushBlock() {
        const std::string block = std::exchange(m_block, {});
        m_isGone = m_isGone || !SendAll(m_socket.Get(), block, ControlClock::now() + m_replyTime);
        return !m_isGone;
    }

    CFileDescriptor m_socket;
    const std::chrono::milliseconds m_replyTime;
    const std::atomic<bool>& m_stopping;
    const int m_wake;
    std::string m_block;
    bool m_isGone = false;
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

class CControlServer::Impl {
public:
    Impl(std::string folder, Handler handler, const Limits& limits)
        : m_folder(std::move(folder)), m_handler(std::move(handler)), m_limits(limits) {}

    ~Impl() {
        m_stopping = true;
        if (m_thread.joinable()) {
            eventfd_write(m_wake.Get(), 1);
            m_thread.join();
        }
        for (CControlWorker& worker : m_workers)
            worker.Cancel();
        m_workers.clear();
        if (m_listener)
            unlink(SocketPath().c_str());
    }

    bool Start(std::string& error) {
        m_wake = CFileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        CFileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (!m_wake || !listener) {
            error = ErrnoText(SocketPath(), "cannot be made");
            return false;
        }
        unlink(SocketPath().c_str());
        // Nobody can connect before listen, so there is no moment at which others have access.
        if (WithControlAddress(m_folder, listener.Get(), bind) != 0 || chmod(SocketPath().c_str(), 0600) != 0 ||
            listen(listener.Get(), 16) != 0) {
            error = ErrnoText(SocketPath(), "cannot be made");
            return false;
        }
        m_listener = std::move(listener);
        m_thread = std::thread([this] { Run(); });
        return true;
    }

private:
    std::string SocketPath() const { return m_folder + "/" + CONTROL_SOCKET_NAME; }

    void Run() {
        while (!m_stopping) {
            std::vector<pollfd> entries{{m_listener.Get(), POLLIN, 0}, {m_wake.Get(), POLLIN, 0}};
            for (const Waiting& waiting : m_waiting)
                entries.push_back({waiting.socket.Get(), POLLIN, 0});
            poll(entries.data(), entries.size(), PollTime());
            eventfd_t ignored = 0;
            eventfd_read(m_wake.Get(), &ignored);
            m_workers.remove_if([](const CControlWorker& worker) { return worker.HasEnded(); });
            std::size_t index = 2;
            for (auto it = m_waiting.begin(); it != m_waiting.end(); ++index) {
                const bool isReadable = entries[index].revents != 0;
                const bool isDone = isReadable ? Receive(*it) : ControlClock::now() >= it->deadline;
                it = isDone ? m_waiting.erase(it) : std::next(it);
            }
            if (entries[0].revents != 0)
                Accept();
        }
    }

    // Milliseconds until the first request is overdue; -1 when none is awaited.
    int PollTime() const {
        if (m_waiting.empty())
            return -1;
        const auto left = m_waiting.front().deadline - ControlClock::now();
        return static_cast<int>(std::max<long long>(0, std::chrono::ceil<std::chrono::milliseconds>(left).count()));
    }

    void Accept() {
        CFileDescriptor socket(accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!socket) {
            if (errno != EMFILE && errno != ENFILE && errno != ENOBUFS && errno != ENOMEM)
                return;
            // Make room, and do not spin on the connection that cannot be taken.
            if (!m_waiting.empty())
                m_waiting.pop_front();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            return;
        }
        if (!IsOwnUser(socket.Get()))
            return;
        if (m_waiting.size() >= m_limits.waitingConnections)
            m_waiting.pop_front();
        m_waiting.push_back({std::move(socket), {}, ControlClock::now() + m_limits.requestTime});
    }

    // True when the connection has left the waiting ones: handed over, refused or gone.
    bool Receive(Waiting& waiting) {
        char block[4096];
        const ssize_t count = recv(waiting.socket.Get(), block, sizeof block, MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
            return false;
        if (count <= 0)
            return true;
        waiting.bytes.append(block, static_cast<std::size_t>(count));
        const std::size_t end = waiting.bytes.find('\n');
        if (end == std::string::npos && waiting.bytes.size() <= m_limits.requestBytes)
            return false;
        if (std::min(end, waiting.bytes.size()) > m_limits.requestBytes)
            Refuse(waiting, "request is longer than " + std::to_string(m_limits.requestBytes) + " bytes");
        else if (m_workers.size() >= m_limits.workers)
            Refuse(waiting, "too many requests at once, try again");
        else
            m_workers.emplace_back(std::move(waiting.socket), m_limits.replyTime, m_stopping, m_wake.Get())
                .Start(waiting.bytes.substr(0, end), m_handler);
        return true;
    }

    // Says why and lets go, without waiting for the client.
    static void Refuse(const Waiting& waiting, const std::string& why) {
        const std::string reply = EncodeReply({EXIT_FAILED, why, {}});
        send(waiting.socket.Get(), reply.data(), reply.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    const std::string m_folder;
    const Handler m_handler;
    const Limits m_limits;
    CFileDescriptor m_wake;
    CFileDescriptor m_listener;
    std::atomic<bool> m_stopping{false};
    std::list<Waiting> m_waiting;        // the server's thread; oldest first
    std::list<CControlWorker> m_workers; // the server's thread, and the destructor after it
    std::thread m_thread;
};

CControlServer::CControlServer() = default;
CControlServer::~CControlServer() = default;

bool CControlServer::Start(const std::string& folder, Handler handler, const Limits& limits, std::string& error) {
    auto impl = std::make_unique<Impl>(folder, std::move(handler), limits);
    if (!impl->Start(error))
        return false;
    m_impl = std::move(impl);
    return true;
}

void CControlServer::Stop() {
    m_impl.reset();
}
