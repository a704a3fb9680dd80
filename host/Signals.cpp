#include "host/Signals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace {

sigset_t EndingSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&set, number);
    return set;
}

} // namespace

CSignals::CSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t set = EndingSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    m_signals = CFileDescriptor(signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
}

void CSignals::EndAtOnce() {
    m_signals = CFileDescriptor();
    const sigset_t set = EndingSignals();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

bool CSignals::Wait(std::chrono::milliseconds time) {
    pollfd entry{m_signals.Get(), POLLIN, 0};
    signalfd_siginfo received;
    if (!m_hasCome && poll(&entry, 1, static_cast<int>(time.count())) > 0)
        m_hasCome = read(m_signals.Get(), &received, sizeof received) == sizeof received;
    return m_hasCome;
}
