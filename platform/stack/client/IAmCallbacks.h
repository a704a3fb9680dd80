// Who wants to hear of I-Am announcements. Any thread.
#pragma once

#include "api/bacnet/Callbacks.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace bacnet {

class IAmCallbacks {
public:
    IAmCallbacks();
    ~IAmCallbacks();

    // Handle, or -1 for null.
    int Register(CIAMCallback* callback);
    // On return no call is under way (but the one that unregisters itself from within, if so) and none will come.
    void Unregister(int handle);
    void Notify(const BACSTAC_ADDRESS& address, unsigned device);

private:
    struct Slot;
    using Slots = std::vector<std::shared_ptr<Slot>>;

    std::mutex m_lock;
    std::shared_ptr<const Slots> m_slots; // m_lock; a new one for each change, so that Notify walks it without a lock
    int m_next = 0;                       // m_lock
    std::atomic<bool> m_any{false};
};

} // namespace bacnet
