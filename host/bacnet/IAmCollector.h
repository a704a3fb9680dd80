// Takes down who announces itself while it lives: registered with the stack at its making, gone at its end. Devices()
// may be asked at any time.
#pragma once

#include "api/bacnet/BacGeneral.h"

#include <mutex>
#include <set>
#include <utility>
#include <vector>

class CIAmCollector : private CIAMCallback {
public:
    using Announcement = std::pair<unsigned, BACSTAC_ADDRESS>; // instance, address

    explicit CIAmCollector(CBacGeneral& bacnet);
    ~CIAmCollector() override;
    CIAmCollector(const CIAmCollector&) = delete;
    CIAmCollector& operator=(const CIAmCollector&) = delete;

    // Each pair of instance and address once, ascending.
    std::vector<Announcement> Devices() const;

private:
    void OnIAm(BACSTAC_ADDRESS const& address, unsigned const& deviceInstance) override;

    struct Before {
        bool operator()(const Announcement& left, const Announcement& right) const;
    };

    CBacGeneral& m_bacnet;
    mutable std::mutex m_lock;
    std::set<Announcement, Before> m_devices; // m_lock
    int m_handle;
};
