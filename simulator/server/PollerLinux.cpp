// The Linux side of Poller.h: epoll, so that the cost of a wait does not grow with the number of devices.
#include "simulator/server/Poller.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <unistd.h>

namespace sim {

namespace {

constexpr std::size_t MAX_READY = 64;

} // namespace

struct Poller::Impl {
    int Epoll = -1;
    int Wake = -1;
    std::array<epoll_event, MAX_READY> Events{};
    std::array<void*, MAX_READY> Ready{};

    ~Impl() {
        if (Wake >= 0)
            ::close(Wake);
        if (Epoll >= 0)
            ::close(Epoll);
    }

    std::string Watch(int handle, void* tag) const {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.ptr = tag;
        if (::epoll_ctl(Epoll, EPOLL_CTL_ADD, handle, &event) != 0)
            return std::string("epoll: ") + std::strerror(errno);
        return {};
    }
};

Poller::Poller() : m_impl(std::make_unique<Impl>()) {}

Poller::~Poller() = default;

std::string Poller::Open() {
    m_impl->Epoll = ::epoll_create1(EPOLL_CLOEXEC);
    m_impl->Wake = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_impl->Epoll < 0 || m_impl->Wake < 0)
        return std::string("epoll: ") + std::strerror(errno);
    return m_impl->Watch(m_impl->Wake, nullptr); // no tag: that is the interruption
}

std::string Poller::Add(const bacnet::UdpSocket& socket, void* tag) {
    return m_impl->Watch(socket.Native(), tag);
}

std::span<void* const> Poller::Wait(int timeoutMs) {
    const int count = ::epoll_wait(m_impl->Epoll, m_impl->Events.data(), MAX_READY, timeoutMs);
    std::size_t ready = 0;
    for (int i = 0; i < count; ++i) {
        void* tag = m_impl->Events[static_cast<std::size_t>(i)].data.ptr;
        if (tag != nullptr) {
            m_impl->Ready[ready++] = tag;
        } else {
            std::uint64_t calls = 0;
            [[maybe_unused]] const auto drained = ::read(m_impl->Wake, &calls, sizeof calls);
        }
    }
    return {m_impl->Ready.data(), ready};
}

void Poller::Interrupt() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_impl->Wake, &one, sizeof one);
}

std::string AllowOpenSockets(std::size_t count) {
    constexpr rlim_t OTHERS = 128; // files that the rest of the process has open
    const rlim_t needed = static_cast<rlim_t>(count) + OTHERS;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= needed)
        return {};
    if (limit.rlim_max < needed)
        return std::to_string(count) + " sockets are needed, but the system allows this process " +
               std::to_string(limit.rlim_max) + " open files";
    limit.rlim_cur = needed;
    if (::setrlimit(RLIMIT_NOFILE, &limit) != 0)
        return std::string("setrlimit: ") + std::strerror(errno);
    return {};
}

} // namespace sim
