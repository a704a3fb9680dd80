// The polling of devices: order, pauses, what counts as operational, and changes of the set meanwhile.
#include "module/browser/DeviceStatusMonitor.h"

#include "tests/unit/browser/BrowserSite.h"

#include <ctime>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

using namespace std::chrono_literals;

class DeviceStatusMonitor : public BrowserSite, public IDeviceStatusListener {
protected:
    static constexpr std::uint32_t FOREVER = 3600000;

    ~DeviceStatusMonitor() override {
        LetGo();
        m_monitor.StopAndWait(10000);
    }

    void OnDeviceStatus(unsigned device, unsigned status) override {
        m_reports.Add(std::to_string(device) + ": " + std::to_string(status));
    }
    void AddPolled(unsigned device, std::uint32_t status) {
        AddDevice(device, "device");
        SetValue(device, Device(device), 112, FakeValue::Of<std::uint32_t>(TYPE_ENUMERATED, {status}));
        m_monitor.AddDevice(device);
    }
    bool WaitFor(const std::function<bool()>& condition, int milliseconds = 10000) {
        for (int i = 0; i < milliseconds && !condition(); ++i)
            std::this_thread::sleep_for(1ms);
        return condition();
    }
    bool WaitForReports(std::size_t count) {
        return WaitFor([&] { return m_reports.Get().size() >= count; });
    }
    // A pass, woken. The first wake of all may only find the beginning.
    Lines Pass(std::size_t reports) {
        m_reports.Take();
        do
            m_monitor.Wake();
        while (!WaitFor([&] { return !m_reports.Get().empty(); }, 1000));
        EXPECT_TRUE(WaitForReports(reports));
        return m_reports.Take();
    }
    // With the first pass behind it.
    void StartPolling(std::size_t reports) {
        m_monitor.StartMonitor(this);
        m_monitor.SetActive(true);
        Pass(reports);
    }

    CEventList m_reports;
    CDeviceStatusMonitor m_monitor{m_bacnet, FOREVER};
};

TEST_F(DeviceStatusMonitor, ReadsEachDeviceOnceInOrderOfInstance) {
    for (const unsigned device : {30U, 10U, 20U})
        AddPolled(device, 0);
    StartPolling(3);
    m_events.Take();
    EXPECT_EQ(CDeviceStatusMonitor::PERIOD, 10000U); // between passes, where nobody wakes it
    EXPECT_THAT(Pass(3), ElementsAre("10: 2", "20: 2", "30: 2"));
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadProperty(10, (8, 10), 112, -1)", "ReadProperty(20, (8, 20), 112, -1)",
                                             "ReadProperty(30, (8, 30), 112, -1)"));
}

TEST_F(DeviceStatusMonitor, OnlyOperationalDevicesAreGood) {
    for (unsigned status = 0; status <= 5; ++status)
        AddPolled(10 + status, status);
    AddPolled(20, 0);
    m_bacnet.SetFault("ReadProperty(20", BACSTAC_STATUS_TIMEOUT);
    StartPolling(7);
    EXPECT_THAT(Pass(7), ElementsAre("10: 2", "11: 2", "12: 1", "13: 1", "14: 1", "15: 1", "20: 1"));
}

TEST_F(DeviceStatusMonitor, DisabledDevicesKeepWhatTheyHad) {
    AddPolled(10, 0);
    AddDevice(20, "remote", 9);
    m_monitor.AddDevice(20);
    m_bacnet.DisableNetwork(9);
    StartPolling(1);
    EXPECT_THAT(Pass(1), ElementsAre("10: 2"));
    EXPECT_THAT(m_events.Take(), testing::Not(testing::Contains(testing::HasSubstr("ReadProperty(20"))));
}

TEST_F(DeviceStatusMonitor, AHiddenTabPollsNothingAndKnowsNothing) {
    AddPolled(10, 0);
    StartPolling(1);
    m_monitor.SetActive(false);
    ASSERT_TRUE(WaitForReports(1));
    EXPECT_EQ(m_reports.Take().front(), "10: 0");
    m_events.Take();
    const std::clock_t before = std::clock();
    std::this_thread::sleep_for(200ms);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 50) << "processor time";
    EXPECT_THAT(m_events.Take(), IsEmpty());
    EXPECT_THAT(m_reports.Take(), IsEmpty());
}

TEST_F(DeviceStatusMonitor, ChangesOfTheSetReportUnknown) {
    m_monitor.StartMonitor(this);
    AddPolled(10, 0);
    AddPolled(20, 0);
    m_reports.Take();
    m_monitor.RemoveDevice(20);
    m_monitor.RemoveDevice(99);
    AddPolled(30, 0);
    m_monitor.ClearDevices();
    EXPECT_THAT(m_reports.Take(), ElementsAre("20: 0", "30: 0", "10: 0", "30: 0"));
}

TEST_F(DeviceStatusMonitor, TheDeviceInWorkMayBeRemoved) {
    for (const unsigned device : {10U, 20U, 30U})
        AddPolled(device, 0);
    StartPolling(3);
    Hang("ReadProperty(10");
    m_reports.Take();
    m_monitor.Wake();
    ASSERT_TRUE(WaitFor([this] { return HasHung(); }));
    m_monitor.RemoveDevice(10);
    m_monitor.RemoveDevice(20); // on which the pass stands
    LetGo();
    ASSERT_TRUE(WaitForReports(4));
    EXPECT_THAT(m_reports.Take(), ElementsAre("10: 0", "20: 0", "10: 2", "30: 2"));
}

TEST_F(DeviceStatusMonitor, GoingInactiveEndsThePassBehindTheReadInWork) {
    AddPolled(10, 0);
    AddPolled(20, 0);
    StartPolling(2);
    Hang("ReadProperty(10");
    m_reports.Take();
    m_monitor.Wake();
    ASSERT_TRUE(WaitFor([this] { return HasHung(); }));
    m_monitor.SetActive(false);
    LetGo();
    ASSERT_TRUE(WaitForReports(5));
    // The wish came while nobody waited for it, so it is seen once more.
    EXPECT_THAT(m_reports.Take(), ElementsAre("10: 2", "10: 0", "20: 0", "10: 0", "20: 0"));
}

TEST_F(DeviceStatusMonitor, AHungReadIsLeftBehindAtTheEnd) {
    AddPolled(10, 0);
    StartPolling(1);
    Hang("ReadProperty(10");
    m_monitor.Wake();
    ASSERT_TRUE(WaitFor([this] { return HasHung(); }));
    m_reports.Take();
    m_monitor.StopAndWait(10);
    LetGo();
    std::this_thread::sleep_for(20ms);
    EXPECT_THAT(m_reports.Take(), IsEmpty());
}

TEST_F(DeviceStatusMonitor, TheSetMayChangeDuringReports) {
    CDeviceStatusMonitor monitor(m_bacnet, 0);
    for (const unsigned device : {10U, 20U})
        AddPolled(device, 0);
    monitor.StartMonitor(this);
    monitor.SetActive(true);
    for (int i = 0; i < 100000; ++i) {
        monitor.AddDevice(10);
        monitor.RemoveDevice(10);
        if (i % 1000 == 0)
            m_reports.Take();
    }
    EXPECT_TRUE(monitor.StopAndWait(10000));
}
