#include "simulator/model/Automation.h"

#include "simulator/model/Device.h"

namespace sim {

namespace {

// Objects that refer to each other may never come to rest.
constexpr unsigned MAX_CONSEQUENCES = 10'000;

} // namespace

void Automation::FindObjects() {
    m_schedules.FindObjects();
    OnTime();
}

void Automation::OnChange(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property) {
    if (Empty())
        return;
    m_changes.push_back({object, property});
    Settle();
}

void Automation::OnTime() {
    m_schedules.OnTime();
    Settle();
}

void Automation::Settle() {
    if (m_settling)
        return;
    m_settling = true;
    for (unsigned i = 0; i < MAX_CONSEQUENCES && !m_changes.empty(); ++i) {
        const Change change = m_changes.front();
        m_changes.pop_front();
        if (const Object* object = m_device.Find(change.Object))
            m_schedules.OnChange(*object, change.Property);
    }
    m_changes.clear();
    m_settling = false;
}

} // namespace sim
