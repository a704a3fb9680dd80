// A site for tests of the history transfer: devices in memory, a kernel, a driver, a clock that stands, settings, a
// folder for the state file, and the history manager on top. It starts a transfer, waits for its end, and gives what
// happened.
#pragma once

#include "api/driver/HistoryObserver.h"
#include "module/console/Settings.h"
#include "module/history/Clock.h"
#include "module/history/HistoryManager.h"
#include "module/history/RowConverter.h"
#include "tests/support/EventList.h"
#include "tests/support/FakeBacnet.h"
#include "tests/support/FakeDriver.h"
#include "tests/unit/history/LogEntries.h"
#include "tests/unit/history/RecordingKernel.h"
#include "tests/unit/history/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

class StandingClock : public IClock {
public:
    SYSTEM_TIME GetLocalSystemTime() const override { return localTime; }
    std::uint32_t TickCount() const override { return tick; }

    SYSTEM_TIME localTime{2026, 11, 6, 21, 9, 8, 7, 654};
    std::atomic<std::uint32_t> tick{1000};
};

class CountedLock : public IModuleLock {
public:
    void Lock() override {
        m_mutex.lock();
        ++locked;
    }
    void Unlock() override { m_mutex.unlock(); }

    std::atomic<int> locked{0};

private:
    std::recursive_mutex m_mutex;
};

class ObservedDriver : public CFakeDriver, public IHistoryObserver {
public:
    using CFakeDriver::CFakeDriver;
    IHistoryObserver* GetHistoryObserver() override { return observed ? this : nullptr; }
    void OnHistoryStatus(const HistoryStatus& status) override {
        statuses.push_back(status);
        if (observerThrows)
            throw std::runtime_error("no observer");
    }

    bool observed = false;
    bool observerThrows = false;
    std::vector<HistoryStatus> statuses; // read behind the end of the transfer
};

class TransferSite : public testing::Test {
protected:
    TransferSite();
    ~TransferSite() override;

    // A device and a trend log of it, both also in the settings. Its one log reference is the Present_Value of analog
    // input 1 of the own device, whose tag is tagId. Without one the trends of the first device go to tag 17,
    // "TK", those of the others to tags of their own.
    void AddTrend(unsigned device, unsigned instance, const std::string& name, std::uint32_t tagId = NO_TAG);
    CDeviceSettings& AddDeviceSettings(const std::string& device, std::vector<std::string> objects = {});
    // The tag of a property of an object of the device.
    void AddTag(std::uint32_t tagId, unsigned device, BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property,
                std::int32_t statusBit = TAG_WHOLE_VALUE, const std::string& name = "TK");
    void SetReferences(unsigned device, BACSTAC_OBJECT_ID trend,
                       const std::vector<BACSTAC_DEV_OBJ_PROP_REF>& references);
    static BACSTAC_DEV_OBJ_PROP_REF Reference(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property = 85);
    static BACSTAC_DEV_OBJ_PROP_REF Reference(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property, unsigned device);
    static std::string Printed(const BACSTAC_DEV_OBJ_PROP_REF& reference);

    // Runs one transfer to its end.
    bool Transfer(TransferRequest* request = nullptr);
    static TransferRequest* Request(unsigned device, unsigned type, unsigned instance);

    std::vector<std::string> TakeLog() { return log.Take(); } // "I: line" and "E: line"
    std::string StoredPosition(const std::string& name) const;
    std::string StateText() const { return ReadBytes(statePath); }
    std::vector<std::uint32_t> StoredTags() const;
    std::vector<double> StoredValues() const;

    CEventList log;    // lines of the driver's log
    CEventList events; // calls of BACnet services
    CEventList all;    // lines, calls of the kernel and of BACnet services, in their order
    RecordingKernel kernel;
    CFakeBacnet bacnet{events};
    ObservedDriver driver{events, kernel};
    StandingClock clock;
    CountedLock lock;
    TemporaryFolder folder;
    const std::string statePath = folder.GetFile("BAC_Hist.ini");
    HistorySettings settings;
    std::unique_ptr<CBACnetHistoryManager> manager;

private:
    class Sink;

    std::map<unsigned, std::uint32_t> m_deviceTags;
};
