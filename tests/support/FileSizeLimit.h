// While it lives, the system lets no file of this process grow beyond so many octets, as a full disk does: what fits is
// written. One at a time, and only in programs that write nothing else meanwhile.
#pragma once

#include <sys/resource.h>

#include <csignal>

class CFileSizeLimit {
public:
    explicit CFileSizeLimit(rlim_t octets) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{octets, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
    }
    ~CFileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int) = SIG_DFL;
};
