#include "module/browser/DeviceStatusMonitor.h"

#include "api/bacnet/BacGeneral.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

namespace {

constexpr BACSTAC_PROPERTY_ID PROP_SYSTEM_STATUS = 112;
constexpr std::uint32_t OPERATIONAL_READ_ONLY = 1; // and 0 is operational

unsigned ReadStatus(CBacGeneral& bacnet, unsigned device) {
    std::uint32_t status = 0;
    const bool isRead = bacnet.ReadProperty(device, {OBJ_DEVICE, device}, PROP_SYSTEM_STATUS, BACSTAC_NO_INDEX, &status,
                                            sizeof status, nullptr) == BACSTAC_OK;
    return isRead && status <= OPERATIONAL_READ_ONLY ? DEVICE_OPERATIONAL : DEVICE_SILENT;
}

} // namespace

struct CDeviceStatusMonitor::State {
    CBacGeneral& bacnet;
    const std::chrono::milliseconds period;
    std::recursive_mutex mutex; // of all below; a listener may call back
    std::condition_variable_any wake;
    bool isWoken = false;
    IDeviceStatusListener* listener = nullptr; // null: the thread ends
    std::set<unsigned> devices;
    std::set<unsigned>::const_iterator next = devices.end(); // where the pass stands
    bool isActive = false;

    State(CBacGeneral& stack, std::uint32_t pause) : bacnet(stack), period(pause) {}

    void Report(unsigned device, unsigned status) {
        const std::lock_guard lock(mutex);
        if (listener)
            listener->OnDeviceStatus(device, status);
    }
    void ReportAllUnknown() {
        const std::lock_guard lock(mutex);
        for (const unsigned device : devices)
            Report(device, DEVICE_UNKNOWN);
    }
    void SetWoken() {
        isWoken = true;
        wake.notify_all();
    }

    std::optional<unsigned> TakeNext();
    bool WaitForNextPass(const CThreadRun& run);
    void Work(const CThreadRun& run);
};

// Empty at the end of a pass. A pass begins at the end of nothing: the first one comes a period after the start.
std::optional<unsigned> CDeviceStatusMonitor::State::TakeNext() {
    const std::lock_guard lock(mutex);
    if (!listener || !isActive)
        return std::nullopt;
    if (next == devices.end()) {
        next = devices.begin();
        return std::nullopt;
    }
    return *next++;
}

// False when the thread has to end.
bool CDeviceStatusMonitor::State::WaitForNextPass(const CThreadRun& run) {
    std::unique_lock lock(mutex);
    if (!isActive)
        ReportAllUnknown();
    const auto isDue = [this] { return isWoken || !listener; };
    if (isActive)
        wake.wait_for(lock, period, isDue);
    else
        wake.wait(lock, isDue);
    isWoken = false;
    return listener && !run.IsAbandoned();
}

void CDeviceStatusMonitor::State::Work(const CThreadRun& run) {
    do {
        while (const std::optional<unsigned> device = TakeNext()) {
            if (!bacnet.IsDeviceEnabled(*device))
                continue;
            const unsigned status = ReadStatus(bacnet, *device);
            if (run.IsAbandoned())
                return;
            Report(*device, status);
        }
    } while (WaitForNextPass(run));
}

CDeviceStatusMonitor::CDeviceStatusMonitor(CBacGeneral& bacnet, std::uint32_t period)
    : CThread("DeviceStatusMonitor"), m_state(std::make_shared<State>(bacnet, period)) {}

CDeviceStatusMonitor::~CDeviceStatusMonitor() {
    RequestStop();
}

void CDeviceStatusMonitor::StartMonitor(IDeviceStatusListener* listener) {
    const std::lock_guard lock(m_state->mutex);
    m_state->listener = listener;
    Start(0, 0);
}

void CDeviceStatusMonitor::RequestStop() {
    const std::lock_guard lock(m_state->mutex);
    m_state->listener = nullptr;
    m_state->SetWoken();
}

void CDeviceStatusMonitor::SetActive(bool isActive) {
    const std::lock_guard lock(m_state->mutex);
    m_state->isActive = isActive;
    m_state->SetWoken();
}

void CDeviceStatusMonitor::Wake() {
    const std::lock_guard lock(m_state->mutex);
    m_state->SetWoken();
}

void CDeviceStatusMonitor::AddDevice(unsigned device) {
    const std::lock_guard lock(m_state->mutex);
    m_state->devices.insert(device);
    m_state->Report(device, DEVICE_UNKNOWN);
}

void CDeviceStatusMonitor::RemoveDevice(unsigned device) {
    const std::lock_guard lock(m_state->mutex);
    const auto found = m_state->devices.find(device);
    if (found == m_state->devices.end())
        return;
    m_state->Report(device, DEVICE_UNKNOWN);
    if (m_state->next == found)
        ++m_state->next;
    m_state->devices.erase(found);
}

void CDeviceStatusMonitor::ClearDevices() {
    const std::lock_guard lock(m_state->mutex);
    m_state->ReportAllUnknown();
    m_state->devices.clear();
    m_state->next = m_state->devices.end();
}

CThread::Body CDeviceStatusMonitor::GetBody() {
    return [state = m_state](CThreadRun& run) {
        state->Work(run);
        run.Close();
    };
}
