// The browser's page as a part of the console: what holds it up, what it holds up, and the end.
#include "tests/gui/browser/BrowserConsole.h"
#include "module/browser/ObjBrowserDlg.h"
#include "module/console/Busy.h"
#include "module/console/Globals.h"

#include <QDialog>
#include <QLineEdit>

#include <atomic>
#include <thread>

using testing::Contains;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr unsigned POINTS = 40;
constexpr Milliseconds SLOWNESS(25); // of an answer: a scan takes a second

} // namespace

class BrowserScan : public BrowserConsole {
protected:
    // Device 20 has points, and is slow to tell of them.
    void OpenSlowSite() {
        OpenConsole();
        for (unsigned i = 0; i < POINTS; ++i)
            AddObject(20, {2, i}, "point");
        m_bacnet.OnCall([this](const std::string& call) {
            if (!call.starts_with("ReadPropertyMultiple(20, (2"))
                return;
            ++m_scanned;
            std::this_thread::sleep_for(SLOWNESS);
        });
    }
    // Returns when the scan is on its way.
    void StartScan() {
        m_scanned = 0;
        PostToGui([this] {
            Select("alpha - 20");
            QMenu* const menu = MenuAt(Tree(), Item("alpha - 20"));
            ASSERT_NE(menu, nullptr);
            ChooseEntry(*menu, {"&Scan device"});
        });
        ASSERT_TRUE(Eventually([this] { return m_scanned > 0; }));
    }
    static bool IsScanning() { return CBusyScope::IsBusy(); }

    std::atomic<unsigned> m_scanned = 0;
};

TEST_F(BrowserScan, HasTheConsoleForItself) {
    OpenSlowSite();
    StartScan();
    OnGui([this] {
        EXPECT_TRUE(IsScanning());
        EXPECT_FALSE(Window().GetRoot().isEnabled());
        for (const char* const button : {"&Discover && scan", "Refresh &now", "Aut&o refresh"})
            EXPECT_ANY_THROW(Page().Press(button)) << button;
        Page().Get<QLineEdit>("&Filter").setText(QStringLiteral("zone")); // takes all items away
    });
    // The scan takes longer than the delays of a selection and of a filter.
    bool wasRebuilt = false;
    ASSERT_TRUE(EventuallyOnGui([&] {
        wasRebuilt = wasRebuilt || (IsScanning() && Tree().model()->rowCount() != 0);
        return !IsScanning();
    }));
    EXPECT_FALSE(wasRebuilt);
    EXPECT_EQ(m_scanned, POINTS) << "to its end";
    EXPECT_THAT(m_events.Take(), Not(Contains(StartsWith("ReadPropertyList"))));
    OnGui([this] {
        EXPECT_TRUE(Window().GetRoot().isEnabled());
        EXPECT_TRUE(Item("zone - 1").isValid());
        EXPECT_FALSE(Item("point - 0").isValid());
    });
}

TEST_F(BrowserScan, ShowsTheStatusOfDevicesMeanwhile) {
    OpenSlowSite();
    SetValue(10, Device(10), 112, FakeValue::Of<std::uint32_t>(TYPE_ENUMERATED, {0}));
    StartScan();
    bool wasShown = false;
    EXPECT_TRUE(EventuallyOnGui([&] {
        m_page->Shown(); // wakes the monitor
        wasShown = wasShown || (IsScanning() && HasImage("Beta - 10", 2));
        return !IsScanning();
    }));
    EXPECT_TRUE(wasShown);
}

TEST_F(BrowserScan, EndsWithTheConsole) {
    OpenSlowSite();
    const std::string file = m_folder.Get("directory");
    StartScan();
    EXPECT_TRUE(End());
    EXPECT_LT(m_scanned, POINTS);
    EXPECT_EQ(m_folder.Get("directory"), file) << "nothing of a half scan is kept";
}

TEST_F(BrowserScan, IsGoneWithTheCancelOfTheConsole) {
    OpenSlowSite();
    for (int scan = 0; scan < 2; ++scan) {
        StartScan();
        ASSERT_TRUE(EventuallyOnGui([] { return !IsScanning(); }));
        OnGui([this] { EXPECT_TRUE(Item("point - 0").isValid()); });
    }
    OnGui([this] {
        dynamic_cast<QDialog&>(Window().GetRoot()).reject();
        EXPECT_FALSE(Item("point - 0").isValid());
        EXPECT_TRUE(Item("zone - 1").isValid());
    });
}

TEST_F(BrowserConsole, EndsWhileAListAndTheMonitorHang) {
    OpenConsole();
    Hang("ReadProperty"); // of the list as well as of the status
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(EventuallyOnGui([this] {
        m_page->Shown();
        const Lines events = m_events.Get();
        const auto begins = [&](const char* with) {
            return std::ranges::any_of(events, [&](const std::string& event) { return event.starts_with(with); });
        };
        return begins("ReadPropertyList") && begins("ReadProperty(");
    }));
    EXPECT_TRUE(End());
}

TEST_F(BrowserConsole, EndsWhileDevicesAreDiscovered) {
    OpenConsole();
    CDialogScript script(m_asked);
    script.Leave("Discover devices");
    PostToGui([this] { Page().Press("&Discover && scan"); });
    ASSERT_TRUE(IsModalOpen("Discover devices"));
    std::atomic<bool> isStorming = true;
    std::thread storm([&] {
        while (isStorming)
            m_bacnet.AnnounceDevice(m_bacnet.GetDevAddr(10), 10);
    });
    EXPECT_TRUE(End());
    isStorming = false;
    storm.join();
}
