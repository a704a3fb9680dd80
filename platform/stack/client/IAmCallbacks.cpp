#include "platform/stack/client/IAmCallbacks.h"

#include <algorithm>
#include <condition_variable>
#include <utility>

namespace bacnet {

struct IAmCallbacks::Slot {
    int Handle = -1;
    CIAMCallback* Callback = nullptr;
    std::mutex Lock;
    std::condition_variable Idle;
    int Calls = 0;        // Lock
    bool Removed = false; // Lock
};

namespace {

// The slot whose callback this thread is in.
thread_local const void* currentSlot = nullptr;

} // namespace

IAmCallbacks::IAmCallbacks() : m_slots(std::make_shared<Slots>()) {}
IAmCallbacks::~IAmCallbacks() = default;

int IAmCallbacks::Register(CIAMCallback* callback) {
    if (callback == nullptr)
        return -1;
    auto slot = std::make_shared<Slot>();
    const std::lock_guard lock(m_lock);
    slot->Handle = m_next++;
    slot->Callback = callback;
    auto slots = std::make_shared<Slots>(*m_slots);
    slots->push_back(slot);
    m_slots = std::move(slots);
    m_any.store(true);
    return slot->Handle;
}

void IAmCallbacks::Unregister(int handle) {
    std::shared_ptr<Slot> slot;
    {
        const std::lock_guard lock(m_lock);
        auto slots = std::make_shared<Slots>(*m_slots);
        const auto found =
            std::find_if(slots->begin(), slots->end(), [handle](const auto& each) { return each->Handle == handle; });
        if (found == slots->end())
            return;
        slot = *found;
        slots->erase(found);
        m_any.store(!slots->empty());
        m_slots = std::move(slots);
    }
    std::unique_lock lock(slot->Lock);
    slot->Removed = true;
    const int own = currentSlot == slot.get() ? 1 : 0;
    slot->Idle.wait(lock, [&] { return slot->Calls <= own; });
}

void IAmCallbacks::Notify(const BACSTAC_ADDRESS& address, unsigned device) {
    if (!m_any.load())
        return;
    std::shared_ptr<const Slots> slots;
    {
        const std::lock_guard lock(m_lock);
        slots = m_slots;
    }
    for (const auto& slot : *slots) {
        {
            const std::lock_guard lock(slot->Lock);
            if (slot->Removed)
                continue;
            ++slot->Calls;
        }
        const void* const outer = std::exchange(currentSlot, slot.get());
        slot->Callback->OnIAm(address, device);
        currentSlot = outer;
        const std::lock_guard lock(slot->Lock);
        --slot->Calls;
        slot->Idle.notify_all();
    }
}

} // namespace bacnet
