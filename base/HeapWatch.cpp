#include "base/HeapWatch.h"

#if defined(__GLIBC__)
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// New memory comes page by page, when it is touched.
std::size_t MetByThisThread() {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return static_cast<std::size_t>(usage.ru_minflt) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

CHeapWatch::CHeapWatch() : m_before(MetByThisThread()) {}

void CHeapWatch::GiveBack(std::size_t bytes) const {
    if (MetByThisThread() - m_before > bytes)
        malloc_trim(0);
}

#else

// Other heaps return large blocks by themselves.
CHeapWatch::CHeapWatch() : m_before(0) {}

void CHeapWatch::GiveBack(std::size_t /*bytes*/) const {}

#endif
