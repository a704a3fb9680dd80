#include "platform/stack/transport/ForeignRegistration.h"

#include <algorithm>

namespace bacnet {

bool ForeignRegistration::Become(State state) {
    const bool changed = m_state != state;
    m_state = state;
    return changed;
}

bool ForeignRegistration::IsDue(std::int64_t now, std::int64_t& wait, bool& changed) {
    const std::lock_guard lock(m_lock);
    changed = false;
    if (m_state == State::registered && now >= m_validUntil)
        changed = Become(State::silent);
    if (m_hasAsked && now < m_nextAt) {
        const std::int64_t until = m_state == State::registered ? std::min(m_nextAt, m_validUntil) : m_nextAt;
        wait = until - now;
        return false;
    }
    if (m_hasAsked && !m_answered && ++m_unanswered >= FIRST_TRIES && m_state != State::registered)
        changed = Become(State::silent) || changed;
    m_hasAsked = true;
    m_answered = false;
    m_askedAt = now;
    m_nextAt = now + ANSWER_WAIT;
    wait = ANSWER_WAIT;
    return true;
}

bool ForeignRegistration::OnResult(std::uint16_t code, std::int64_t now) {
    const std::lock_guard lock(m_lock);
    switch (static_cast<BvlcResult>(code)) {
    case BvlcResult::success:
        if (m_answered) // of something else
            return false;
        m_answered = true;
        m_unanswered = 0;
        // Counted from the request: the device may have started before its answer reached us, not after.
        m_nextAt = m_askedAt + m_timeToLive * std::int64_t{500};
        m_validUntil = m_askedAt + m_timeToLive * std::int64_t{1000};
        return Become(State::registered);
    case BvlcResult::register_foreign_device_nak:
        m_answered = true;
        m_unanswered = 0;
        m_nextAt = now + REFUSED_WAIT;
        return Become(State::refused);
    case BvlcResult::distribute_broadcast_nak:
        // The device has lost us, by a restart perhaps. Asked again at once, but no more often than if it were silent.
        if (m_state == State::registered)
            m_nextAt = std::min(m_nextAt, std::max(now, m_askedAt + ANSWER_WAIT));
        return false;
    default:
        return false;
    }
}

ForeignRegistration::State ForeignRegistration::Current() const {
    const std::lock_guard lock(m_lock);
    return m_state;
}

const char* ToString(ForeignRegistration::State state) {
    switch (state) {
    case ForeignRegistration::State::asking:
        return "asking";
    case ForeignRegistration::State::registered:
        return "registered";
    case ForeignRegistration::State::refused:
        return "refused";
    case ForeignRegistration::State::silent:
        return "no answer";
    }
    return "?";
}

} // namespace bacnet
