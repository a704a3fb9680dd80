#include "simulator/model/Automation.h"

#include "simulator/model/Device.h"

#include <utility>

namespace sim {

namespace {

// Objects that refer to each other may never come to rest.
constexpr unsigned MAX_CONSEQUENCES = 10'000;

} // namespace

template <typename Step>
void Automation::Do(Step step) {
    const bool within = std::exchange(m_settling, true);
    step();
    m_settling = within;
    Settle();
}

void Automation::FindObjects() {
    Do([this] {
        m_schedules.FindObjects();
        m_events.FindObjects();
        m_subscriptions.FindObjects();
        m_schedules.OnTime();
    });
}

void Automation::OnChange(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property) {
    if (Empty())
        return;
    m_changes.push_back({object, property});
    Settle();
}

PropertyError Automation::Subscribe(const CovRequest& request) {
    const PropertyError error = m_subscriptions.Subscribe(request);
    Settle();
    return error;
}

void Automation::OnTime() {
    Do([this] {
        m_schedules.OnTime();
        m_events.OnTime();
        m_subscriptions.OnTime();
    });
}

void Automation::Settle() {
    if (m_settling)
        return;
    m_settling = true;
    for (unsigned i = 0; i < MAX_CONSEQUENCES && !m_changes.empty(); ++i) {
        const Change change = m_changes.front();
        m_changes.pop_front();
        if (Object* object = m_device.Find(change.Object)) {
            m_schedules.OnChange(*object, change.Property);
            m_events.OnChange(*object, change.Property);
            m_subscriptions.OnChange(*object);
        }
    }
    m_changes.clear();
    m_settling = false;
    m_isAtWork = !m_schedules.Empty() || m_events.IsWaiting() || m_subscriptions.IsWaiting();
}

} // namespace sim
