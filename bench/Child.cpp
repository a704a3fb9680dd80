#include "bench/Child.h"

#include "bench/PingPong.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace bench {

Child::Child(const std::function<void()>& body) {
    std::fflush(nullptr);
    m_pid = fork();
    if (m_pid < 0)
        std::abort();
    if (m_pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        body();
        _exit(0);
    }
}

Child::~Child() {
    kill(m_pid, SIGKILL);
    waitpid(m_pid, nullptr, 0);
}

PinnedScope::PinnedScope(int processor) {
    sched_getaffinity(0, sizeof m_before, &m_before);
    PinThread(processor);
}

PinnedScope::~PinnedScope() {
    sched_setaffinity(0, sizeof m_before, &m_before);
}

} // namespace bench
