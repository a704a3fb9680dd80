#include "tests/support/EventList.h"

#include <utility>

void CEventList::Add(std::string event) {
    const std::lock_guard lock(m_mutex);
    m_events.push_back(std::move(event));
}

CEventList::Lines CEventList::Take() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_events, {});
}

CEventList::Lines CEventList::Get() const {
    const std::lock_guard lock(m_mutex);
    return m_events;
}
