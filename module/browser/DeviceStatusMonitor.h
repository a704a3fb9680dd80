// Polls the devices of the tree, one after another, and tells whether each is operational. Any thread may call any
// operation; none waits for a device.
#pragma once

#include "module/console/Thread.h"

#include <cstdint>
#include <memory>

class CBacGeneral;

inline constexpr unsigned DEVICE_UNKNOWN = 0;     // it is not being polled
inline constexpr unsigned DEVICE_SILENT = 1;      // it does not answer, or is not operational
inline constexpr unsigned DEVICE_OPERATIONAL = 2; // also when it is so for reading only

class IDeviceStatusListener {
public:
    virtual ~IDeviceStatusListener() = default;
    // On any thread, with the monitor's lock held: hands over and returns.
    virtual void OnDeviceStatus(unsigned device, unsigned status) = 0;
};

class CDeviceStatusMonitor : public CThread {
public:
    static constexpr std::uint32_t PERIOD = 10000; // ms from the end of one pass to the next

    explicit CDeviceStatusMonitor(CBacGeneral& bacnet, std::uint32_t period = PERIOD);
    ~CDeviceStatusMonitor() override;

    // The listener hears of changes until the monitor was asked to stop.
    void StartMonitor(IDeviceStatusListener* listener);
    void RequestStop() override;
    // Polls only while active; the devices are unknown otherwise.
    void SetActive(bool isActive);
    // Ends the pause between two passes.
    void Wake();
    // Each reports the devices concerned as unknown.
    void AddDevice(unsigned device);
    void RemoveDevice(unsigned device);
    void ClearDevices();

protected:
    Body GetBody() override;

private:
    struct State;

    const std::shared_ptr<State> m_state; // shared with the thread, which may be left behind in a read
};
