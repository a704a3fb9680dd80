// This station's registration as a foreign device with a broadcast management device of another network (ANSI/ASHRAE
// 135 annex J.5.2): when to ask for it, and how it stands. Sends nothing itself. Any thread at any time; times are
// milliseconds that only grow.
#pragma once

#include "platform/stack/transport/BroadcastSettings.h"

#include <algorithm>
#include <cstdint>
#include <mutex>

namespace bacnet {

class ForeignRegistration {
public:
    enum class State : std::uint8_t {
        asking,     // the first answer is not there yet
        registered, // the last answer's time has not run out
        refused,    // the device said no
        silent,     // the device has not answered, or not any more
    };

    static constexpr std::int64_t ANSWER_WAIT = 5000;   // before an unanswered registration is sent again
    static constexpr std::int64_t REFUSED_WAIT = 30000; // before one that was refused is tried again
    static constexpr int FIRST_TRIES = 3;               // unanswered ones before the state is silent

    // The registration is renewed at half its time.
    explicit ForeignRegistration(const ForeignSettings& settings)
        : m_bbmd(settings.Bbmd), m_timeToLive(std::max(settings.TimeToLive, ForeignSettings::SHORTEST_TIME_TO_LIVE)) {}

    const BipAddress& Device() const { return m_bbmd; }
    std::uint16_t TimeToLive() const { return m_timeToLive; }

    // True: a registration is to be sent now. Otherwise wait is how long nothing will be due. changed: the state has.
    bool IsDue(std::int64_t now, std::int64_t& wait, bool& changed);
    // A BVLC-Result from the device. True when the state has changed.
    bool OnResult(std::uint16_t code, std::int64_t now);
    State Current() const;

private:
    bool Become(State state); // m_lock held

    const BipAddress m_bbmd;
    const std::uint16_t m_timeToLive;
    mutable std::mutex m_lock;
    State m_state = State::asking; // m_lock, as all below
    bool m_answered = true;        // the registration that was sent last
    bool m_hasAsked = false;
    int m_unanswered = 0; // in a row
    std::int64_t m_askedAt = 0;
    std::int64_t m_nextAt = 0;
    std::int64_t m_validUntil = 0;
};

const char* ToString(ForeignRegistration::State state);

} // namespace bacnet
