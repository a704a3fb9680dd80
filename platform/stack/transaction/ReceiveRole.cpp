#include "platform/stack/transaction/ReceiveRole.h"

namespace bacnet {

bool ReceiveRole::TryLead(Candidate& candidate) {
    const std::lock_guard lock(m_mutex);
    if (candidate.m_leading)
        return true;
    if (!m_held) {
        if (candidate.m_queued)
            Unlink(candidate);
        m_held = true;
        ++m_leads;
        return candidate.m_leading = true;
    }
    if (!candidate.m_queued) {
        candidate.m_queued = true;
        candidate.m_previous = m_last;
        (m_last != nullptr ? m_last->m_next : m_first) = &candidate;
        m_last = &candidate;
    }
    return false;
}

void ReceiveRole::Leave(Candidate& candidate) {
    Waiter* wake = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        if (candidate.m_queued)
            Unlink(candidate);
        if (candidate.m_leading) {
            candidate.m_leading = false;
            PassOn(wake);
        }
    }
    if (wake != nullptr)
        wake->Signal();
}

bool ReceiveRole::TryTake() {
    const std::lock_guard lock(m_mutex);
    if (m_held)
        return false;
    m_held = true;
    return true;
}

void ReceiveRole::Release() {
    Waiter* wake = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        PassOn(wake);
    }
    if (wake != nullptr)
        wake->Signal();
}

bool ReceiveRole::Idle(bool force) {
    const std::lock_guard lock(m_mutex);
    const bool none = m_leads == m_leadsSeen;
    m_leadsSeen = m_leads;
    return !m_held && (none || force);
}

void ReceiveRole::PassOn(Waiter*& wake) {
    Candidate* const next = m_first;
    m_held = next != nullptr;
    if (next == nullptr)
        return;
    Unlink(*next);
    next->m_leading = true;
    ++m_leads;
    wake = &next->m_waiter;
}

void ReceiveRole::Unlink(Candidate& candidate) {
    (candidate.m_previous != nullptr ? candidate.m_previous->m_next : m_first) = candidate.m_next;
    (candidate.m_next != nullptr ? candidate.m_next->m_previous : m_last) = candidate.m_previous;
    candidate.m_previous = candidate.m_next = nullptr;
    candidate.m_queued = false;
}

} // namespace bacnet
