#include "host/FieldDriver.h"
#include "module/console/Globals.h"
#include "platform/historian/MemoryHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "tests/support/FakeUsers.h"
#include "tests/support/TempFolder.h"

#include <QFileInfo>
#include <QString>

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace {

using Change = std::pair<std::uint32_t, double>;

class FieldDriver : public testing::Test {
protected:
    FieldDriver() {
        for (const char* name : {"A", "B"}) {
            TagSettings tag;
            tag.name = name;
            tag.type = TAG_TYPE_DIGITAL;
            tag.value = 0.0;
            std::uint32_t id = 0;
            EXPECT_EQ(m_kernel.AddTag(tag, id), AddTagResult::Added);
        }
    }

    static KernelSettings SmallQueue() {
        KernelSettings settings;
        settings.queueLimit = 4;
        return settings;
    }

    void Connect() {
        std::string error;
        ASSERT_TRUE(m_driver.Connect(error)) << error;
    }
    void Subscribe(std::uint32_t id) {
        ASSERT_EQ(m_kernel.RqGateMsg(m_driver.GetGateId(), 1, &id, QL_GATE_SUBSCRIBE), QL_OK);
    }
    void OnChange(std::uint32_t id, double value) {
        std::unique_lock guard(m_lock);
        m_isInHandler = true;
        m_changed.notify_all();
        m_changed.wait(guard, [&] { return !m_isBlocked; });
        m_changes.emplace_back(id, value);
        m_changed.notify_all();
    }
    std::vector<Change> WaitForChanges(std::size_t count) {
        std::unique_lock guard(m_lock);
        m_changed.wait_for(guard, 20s, [&] { return m_changes.size() >= count; });
        return m_changes;
    }

    CTempFolder m_folder;
    MemoryHistoryStore m_history;
    Kernel m_kernel{SmallQueue(), m_history};
    CStationStore m_station{m_folder.File("station.json"), IdentityConfig{}};
    CAlarmRuleFile m_rules{m_folder.File("rules.json")};
    CSettingsGuard m_settings{m_folder.File("settings.dat")};
    CHistoryMonitor m_monitor;
    CEventList m_events;
    CFakeUsers m_users{m_events};
    std::mutex m_lock;
    std::condition_variable m_changed;
    bool m_isBlocked = false; // these are guarded by m_lock
    bool m_isInHandler = false;
    std::vector<Change> m_changes;
    CFieldDriver m_driver{
        m_kernel,  m_station, m_rules, m_settings,
        m_monitor, m_users,   100,     [this](std::uint32_t id, double value) {
            OnChange(id, value); }};
};

} // namespace

TEST_F(FieldDriver, BringsAPictureUnderItsDisplayName) {
    EXPECT_TRUE(QFileInfo::exists(QStringLiteral(":/driver/BACnet_driver")));
}

TEST_F(FieldDriver, GivesTheConsoleWhatItAsksFor) {
    Connect();
    EXPECT_STREQ(m_driver.GetName(), "BACnet driver");
    EXPECT_NE(m_driver.GetGateId(), 0U);
    EXPECT_FALSE(m_driver.IsWarmStart());
    EXPECT_EQ(m_driver.GetTransferChunk(), 100);
    EXPECT_EQ(&m_driver.GetKernel(), &m_kernel);
    EXPECT_EQ(m_driver.GetHistoryObserver(), &m_monitor);
    EXPECT_EQ(m_driver.GetAlarmConfig().GetRules(), &m_rules);
    EXPECT_EQ(&m_driver.GetAlarmConfig().GetEventFilters(), &m_station.EventFilters());
    EXPECT_EQ(&m_driver.GetAlarmConfig().GetCommunicationError(), &m_station.CommunicationError());
    EXPECT_EQ(&m_driver.GetIdentity(), static_cast<IBacnetIdentity*>(&m_station));
}

TEST_F(FieldDriver, HandsOverTheChangesOfTagsThatWereAskedFor) {
    Connect();
    Subscribe(0);
    m_kernel.SetTagValue(1, 1.0);
    m_kernel.SetTagValue(0, 1.0);
    m_kernel.SetTagValue(0, 0.0);
    EXPECT_EQ(WaitForChanges(2), (std::vector<Change>{{0, 1.0}, {0, 0.0}}));
}

TEST_F(FieldDriver, ReadsAllTagsAgainAfterMessagesWereLost) {
    Connect();
    Subscribe(0);
    Subscribe(1);
    {
        const std::lock_guard guard(m_lock);
        m_isBlocked = true;
    }
    m_kernel.SetTagValue(1, 1.0); // in the handler, which waits
    {
        std::unique_lock guard(m_lock);
        ASSERT_TRUE(m_changed.wait_for(guard, 20s, [&] { return m_isInHandler; }));
    }
    m_kernel.SetTagValue(1, 0.0); // lost
    for (const double value : {1.0, 0.0, 1.0, 0.0})
        m_kernel.SetTagValue(0, value);
    {
        const std::lock_guard guard(m_lock);
        m_isBlocked = false;
    }
    m_changed.notify_all();
    EXPECT_EQ(WaitForChanges(7),
              (std::vector<Change>{{1, 1.0}, {0, 1.0}, {0, 0.0}, {0, 1.0}, {0, 0.0}, {0, 0.0}, {1, 0.0}}));
}

TEST_F(FieldDriver, SeesTheKernelShutDown) {
    Connect();
    EXPECT_FALSE(m_driver.HasKernelEnded());
    m_kernel.ShutDown();
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (!m_driver.HasKernelEnded() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(m_driver.HasKernelEnded());
    m_driver.Disconnect();
}

TEST_F(FieldDriver, CannotConnectToAKernelThatHasEnded) {
    m_kernel.ShutDown();
    std::string error;
    EXPECT_FALSE(m_driver.Connect(error));
    EXPECT_EQ(error, "the kernel refuses the driver's connection (13)");
}

TEST_F(FieldDriver, SavesSettingsAndStation) {
    BDCManager.Lock();
    allPropPages = AllPropPages();
    allPropPages.history.flushTag = "Flush";
    BDCManager.Unlock();
    m_station.SetDeviceName("changed");
    m_driver.SaveSettings();
    AllPropPages pages;
    std::vector<CEventFilter> filters;
    std::vector<std::string> notes;
    EXPECT_EQ(m_settings.Load(pages, filters, notes), CSettingsGuard::Source::Current);
    EXPECT_EQ(pages.history.flushTag, "Flush");
    EXPECT_NE(m_folder.Get("station.json").find("\"changed\""), std::string::npos);
}

TEST_F(FieldDriver, TellsWhatItCouldNotSaveAndSavesItTheNextTime) {
    m_driver.SaveSettings();
    EXPECT_EQ(m_driver.GetSaveFailure(), "");
    const std::string before = m_folder.Get("settings.dat");
    BDCManager.Lock();
    allPropPages.history.flushTag = "Changed";
    BDCManager.Unlock();

    std::filesystem::create_symlink("/dev/full", m_folder.File("settings.dat.new")); // the disk is full
    m_driver.SaveSettings();
    EXPECT_EQ(m_driver.GetSaveFailure().rfind("Settings are not saved: " + m_folder.File("settings.dat.new"), 0), 0U)
        << m_driver.GetSaveFailure();
    EXPECT_NE(m_driver.GetSaveFailure().find("No space left on device\r\nWhat was changed stays in effect"),
              std::string::npos);
    EXPECT_EQ(m_folder.Get("settings.dat"), before);
    EXPECT_EQ(allPropPages.history.flushTag, "Changed");

    std::filesystem::remove(m_folder.File("settings.dat.new"));
    m_driver.SaveSettings();
    EXPECT_EQ(m_driver.GetSaveFailure(), "");
    EXPECT_NE(m_folder.Get("settings.dat").find("Changed"), std::string::npos);
}

TEST_F(FieldDriver, AFolderThatCannotBeWrittenIsToldForBothFiles) {
    m_station.SetDeviceName("changed");
    const std::filesystem::path aside = m_folder.Path() + ".aside";
    std::filesystem::rename(m_folder.Path(), aside);
    m_driver.SaveSettings();
    const std::string failure = m_driver.GetSaveFailure();
    EXPECT_EQ(failure.rfind("The station's identity and alarms are not saved: " + m_folder.File("station.json"), 0), 0U)
        << failure;
    EXPECT_NE(failure.find("\r\nSettings are not saved: " + m_folder.File("settings.dat")), std::string::npos)
        << failure;

    std::filesystem::rename(aside, m_folder.Path());
    m_driver.SaveSettings();
    EXPECT_EQ(m_driver.GetSaveFailure(), "");
    EXPECT_NE(m_folder.Get("station.json").find("\"changed\""), std::string::npos) << "nothing was lost";
}

TEST(HistoryMonitor, CountsEndsAndWaitsForThem) {
    CHistoryMonitor monitor;
    EXPECT_FALSE(monitor.WaitForEnd(0, 0ms));
    HistoryStatus status;
    monitor.OnHistoryStatus(status);
    EXPECT_EQ(monitor.Ended(), 0U) << "a status without a transfer is no end";
    status.running = true;
    status.device = "1000";
    monitor.OnHistoryStatus(status);
    EXPECT_TRUE(monitor.Latest().running);
    EXPECT_EQ(monitor.Latest().device, "1000");
    std::thread ender([&] {
        status.running = false;
        status.errorCount = 2;
        monitor.OnHistoryStatus(status);
    });
    EXPECT_TRUE(monitor.WaitForEnd(0, 20s));
    ender.join();
    EXPECT_EQ(monitor.Ended(), 1U);
    EXPECT_EQ(monitor.Latest().errorCount, 2U);
    EXPECT_FALSE(monitor.WaitForEnd(1, 0ms));
}
