// The browser's page without its window: timers, saving, scans, and what is selected.
#include "module/browser/ObjBrowser.h"

#include "module/browser/Discovery.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/browser/BrowserSite.h"
#include "tests/unit/browser/Directories.h"
#include "tests/unit/browser/FakeQueue.h"
#include "tests/unit/browser/StationIdentity.h"

#include <map>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ObjBrowser : public BrowserSite, public IBrowserWindow {
protected:
    ObjBrowser() {
        CBacGeneral::SetDirFileName(m_folder.File("directory"));
        AddDevice(10, "Beta");
        AddObject(10, {2, 1}, "zone");
        AddDevice(20, "alpha");
        PutDevice(m_saved, 10, "Beta", 0, {{{2, 1}, "zone"}});
        PutDevice(m_saved, 20, "alpha", 0, {});
        for (const unsigned device : {10U, 20U})
            m_saved.SetDevAddr(device, m_bacnet.GetDevAddr(device));
        m_saved.Save(m_folder.File("directory"));
        Open();
    }
    void Open() {
        m_browser = std::make_unique<CObjBrowser>(BrowserServices{m_bacnet, m_identity, m_order, m_queue},
                                                  static_cast<IBrowserWindow&>(*this));
        m_browser->Start();
        m_events.Take();
        m_shown.Take();
    }
    ~ObjBrowser() override {
        m_browser->Destroy();
        CBacGeneral::SetDirFileName({});
    }

    CBrowserTree& Tree() { return m_browser->GetTree(); }
    void Select(const TreeItem* item) {
        m_selected = item;
        m_browser->RefreshPropertyList();
    }
    // Time goes on; timers tick as they are due.
    void Advance(unsigned milliseconds) {
        for (unsigned i = 0; i < milliseconds; i += 10) {
            for (const auto& [timer, period] : std::map(m_timers))
                if (m_timers.contains(timer) && (m_elapsed[timer] += 10) >= period) {
                    m_elapsed[timer] = 0;
                    m_browser->OnTimer(timer);
                }
        }
        m_queue->Run();
    }
    Lines Reads() {
        m_queue->RunUntil([this] { return m_isListFree; });
        Lines reads;
        for (const std::string& event : m_events.Take())
            if (event.starts_with("ReadPropertyList"))
                reads.push_back(event);
        return reads;
    }
    std::vector<unsigned> Devices() {
        std::vector<unsigned> devices;
        for (const auto& [device, item] : Tree().GetDevices())
            devices.push_back(device);
        return devices;
    }

    // ---- the window
    void StartTimer(BrowserTimer timer, unsigned milliseconds) override {
        m_timers[timer] = milliseconds;
        m_elapsed[timer] = 0;
    }
    void StopTimer(BrowserTimer timer) override { m_timers.erase(timer); }
    bool IsServing() const override { return m_isServing; }
    const TreeItem* GetSelectedItem() const override { return m_selected; }
    std::vector<std::int64_t> GetSelectedRows() const override { return m_rows; }
    std::string GetFilter() const override { return m_filter; }
    void HideStrip() override { m_shown.Add("hide"); }
    std::optional<DeviceAddresses> PickDevices(CDiscovery& discovery) override {
        for (const unsigned device : m_picked.value_or(std::vector<unsigned>()))
            discovery.TakeIAm(m_bacnet.GetDevAddr(device), device);
        return m_picked ? std::optional(discovery.GetPicked(discovery.GetRows())) : std::nullopt;
    }
    std::optional<unsigned> AskRefreshPeriod(unsigned seconds) override {
        m_shown.Add("asked " + std::to_string(seconds));
        return m_period;
    }
    std::unique_ptr<IProgress> OpenProgress() override {
        auto progress = std::make_unique<CFakeProgress>(m_events);
        progress->m_isCancelled = m_isCancelling;
        progress->m_onPump = m_onPump;
        return progress;
    }
    void BeginReading(const std::string&, unsigned) override { m_isListFree = false; }
    void SetSource(const std::string&, unsigned) override {}
    void SetProperty(const std::string&, unsigned) override {}
    void AddRow(const PropertyRow& row) override { m_shown.Add(row.name + " = " + row.value); }
    void ClearRows() override { m_shown.Add("clear"); }
    void EndReading() override { m_isListFree = true; }

    CTempFolder m_folder;
    CBACnetDir m_saved;
    CStationIdentity m_identity;
    CPlainOrder m_order;
    std::shared_ptr<CFakeQueue> m_queue = std::make_shared<CFakeQueue>();
    CEventList m_shown;
    std::map<BrowserTimer, unsigned> m_timers;
    std::map<BrowserTimer, unsigned> m_elapsed;
    bool m_isServing = true;
    bool m_isListFree = true;
    bool m_isCancelling = false;
    std::function<void()> m_onPump;
    const TreeItem* m_selected = nullptr;
    std::vector<std::int64_t> m_rows;
    std::string m_filter;
    std::optional<std::vector<unsigned>> m_picked;
    std::optional<unsigned> m_period;
    std::unique_ptr<CObjBrowser> m_browser;
};

TEST_F(ObjBrowser, TheLastSelectionIsReadAMomentLater) {
    Select(Tree().FindDevice(20));
    Advance(150);
    Select(Tree().FindObject(10, {2, 1}));
    EXPECT_EQ(m_shown.Take().back(), "clear");
    Advance(240);
    EXPECT_THAT(Reads(), IsEmpty());
    Advance(10);
    EXPECT_THAT(Reads(), ElementsAre("ReadPropertyList(10, (2, 1), 100)"));
    Advance(1000);
    EXPECT_THAT(Reads(), IsEmpty());
}

TEST_F(ObjBrowser, ADeviceStandsForItsDeviceObjectAndOthersForNothing) {
    Select(Tree().FindDevice(20));
    Advance(250);
    EXPECT_THAT(Reads(), ElementsAre("ReadPropertyList(20, (8, 20), 100)"));
    for (const TreeItem* const item :
         {Tree().FindType(10, 2), Tree().GetRoot().children[0].get(), (TreeItem*)nullptr}) {
        Select(item);
        Advance(250);
        EXPECT_THAT(Reads(), IsEmpty());
    }
}

TEST_F(ObjBrowser, ATickOfADisabledConsoleWaits) {
    Select(Tree().FindDevice(20));
    m_isServing = false;
    Advance(5000);
    EXPECT_THAT(Reads(), IsEmpty());
    m_isServing = true;
    Advance(250);
    EXPECT_THAT(Reads().size(), 1U);
}

TEST_F(ObjBrowser, AutoRefreshReadsAgainAndAgain) {
    Select(Tree().FindDevice(20));
    m_period = 6;
    EXPECT_TRUE(m_browser->ToggleAutoRefresh(false));
    EXPECT_THAT(m_shown.Take(), Contains("asked 5"));
    Advance(250);
    Reads();
    Advance(6000);
    Advance(250);
    EXPECT_EQ(Reads().size(), 1U);
    m_isServing = false;
    Advance(20000);
    EXPECT_THAT(Reads(), IsEmpty());
    m_isServing = true;
    EXPECT_FALSE(m_browser->ToggleAutoRefresh(true));
    Advance(20000);
    EXPECT_THAT(Reads(), IsEmpty());
    m_browser->ToggleAutoRefresh(false);
    EXPECT_THAT(m_shown.Take(), Contains("asked 6"));
}

TEST_F(ObjBrowser, AutoRefreshIsForgottenWithTheConsole) {
    m_period = 6;
    m_browser->ToggleAutoRefresh(false);
    m_browser->Destroy();
    m_timers.clear(); // they go with the window
    Open();
    EXPECT_THAT(m_timers, IsEmpty());
    m_browser->ToggleAutoRefresh(false);
    EXPECT_THAT(m_shown.Take(), ElementsAre("asked 5"));
}

TEST_F(ObjBrowser, AutoRefreshNeedsAPeriod) {
    EXPECT_FALSE(m_browser->ToggleAutoRefresh(false));
    EXPECT_THAT(m_timers, IsEmpty());
}

TEST_F(ObjBrowser, TheFilterWaitsForTheLastKey) {
    for (const char* const text : {"a", "al", "alp"}) {
        m_filter = text;
        m_browser->FilterChanged();
        EXPECT_THAT(Devices(), IsEmpty());
        Advance(200);
    }
    Advance(290);
    EXPECT_THAT(Devices(), IsEmpty());
    Advance(10);
    EXPECT_THAT(Devices(), ElementsAre(20));
    m_filter = "nothing like it";
    m_browser->FilterChanged();
    Advance(500);
    EXPECT_THAT(Tree().GetRoot().children, IsEmpty());
    m_filter = "";
    m_browser->FilterChanged();
    Advance(500);
    EXPECT_THAT(Devices(), ElementsAre(10, 20));
}

TEST_F(ObjBrowser, OneRowOrAllOfThemAreSelected) {
    BrowserSelection selection;
    m_selected = Tree().FindObject(10, {2, 1});
    EXPECT_FALSE(m_browser->GetSelection(selection, true));
    EXPECT_FALSE(m_browser->GetSelection(selection, false));
    m_rows = {85, 28};
    EXPECT_FALSE(m_browser->GetSelection(selection, true));
    EXPECT_TRUE(m_browser->GetSelection(selection, false));
    EXPECT_THAT(selection.properties, ElementsAre(85, 28));
    EXPECT_EQ(selection.device, 10U);
    EXPECT_EQ(selection.object, (BACSTAC_OBJECT_ID{2, 1}));
    m_rows = {28};
    EXPECT_TRUE(m_browser->GetSelection(selection, true));
    EXPECT_THAT(selection.properties, ElementsAre(28));
}

TEST_F(ObjBrowser, NothingSelectedIsNothing) {
    BrowserSelection selection;
    m_rows = {85};
    EXPECT_FALSE(m_browser->GetSelection(selection, true));
    EXPECT_EQ(selection.network, 65535);
    EXPECT_EQ(selection.device, 0xFFFFFFFF);
    EXPECT_EQ(selection.object, (BACSTAC_OBJECT_ID{0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_THAT(selection.properties, IsEmpty());
}

TEST_F(ObjBrowser, TheLastSingleRowIsRemembered) {
    EXPECT_EQ(m_browser->GetSelectedProperty(), PROP_PRESENT_VALUE);
    m_rows = {28};
    m_browser->RowsChanged();
    m_rows = {28, 77};
    m_browser->RowsChanged();
    m_rows = {};
    m_browser->RowsChanged();
    EXPECT_EQ(m_browser->GetSelectedProperty(), 28U);
}

TEST_F(ObjBrowser, AScanStaysHereUntilItIsSaved) {
    AddDevice(30, "gamma");
    m_picked = {{30}};
    m_browser->DiscoverAndScan();
    EXPECT_THAT(Devices(), ElementsAre(10, 20, 30));
    EXPECT_THAT(m_events.Take(), testing::Not(Contains("LoadDir()")));
    CBACnetDir file;
    ASSERT_TRUE(file.Load(m_folder.File("directory")));
    EXPECT_FALSE(file.FindDev(30));
    EXPECT_TRUE(m_browser->SaveDirectory());
    EXPECT_THAT(m_events.Take(), ElementsAre("LoadDir()"));
    ASSERT_TRUE(file.Load(m_folder.File("directory")));
    EXPECT_TRUE(file.FindDev(30));
}

TEST_F(ObjBrowser, ACancelOfTheConsoleTakesTheFileAgain) {
    AddDevice(30, "gamma");
    m_picked = {{30}};
    m_browser->DiscoverAndScan();
    m_browser->Cancelled();
    EXPECT_THAT(Devices(), ElementsAre(10, 20));
}

TEST_F(ObjBrowser, ACancelWithoutAFileKeepsWhatIsThere) {
    m_folder.Put("directory", "no directory");
    m_browser->Cancelled();
    EXPECT_THAT(Devices(), ElementsAre(10, 20));
}

TEST_F(ObjBrowser, ADamagedFileIsAnEmptyTree) {
    m_folder.Put("directory", "no directory");
    m_browser->Destroy();
    Open();
    EXPECT_THAT(Tree().GetRoot().children, IsEmpty());
}

TEST_F(ObjBrowser, AFileThatCannotBeWrittenIsLogged) {
    CBacGeneral::SetDirFileName(m_folder.File("missing/directory"));
    EXPECT_FALSE(m_browser->SaveDirectory());
    EXPECT_THAT(m_events.Take(), ElementsAre("LoadDir()"));
    EXPECT_THAT(m_log.Take(),
                ElementsAre("E: Failure writing the directory file " + m_folder.File("missing/directory")));
}

TEST_F(ObjBrowser, ACancelledScanLeavesTheTree) {
    m_picked = {{10}};
    m_isCancelling = true;
    const TreeItem* const before = Tree().FindDevice(10);
    m_browser->DiscoverAndScan();
    EXPECT_EQ(Tree().FindDevice(10), before);
}

TEST_F(ObjBrowser, NoPickedDevicesAreAScanAllTheSame) {
    m_picked = std::vector<unsigned>{};
    m_browser->DiscoverAndScan();
    EXPECT_THAT(m_log.Take(), ElementsAre("I: Scan: 0 devices, 0 objects, 0 failures"));
    m_picked.reset();
    m_browser->DiscoverAndScan();
    EXPECT_THAT(m_log.Take(), IsEmpty());
}

TEST_F(ObjBrowser, TheSelectedDeviceIsScanned) {
    AddObject(20, {2, 5}, "new");
    m_selected = Tree().FindDevice(20);
    m_onPump = [this] { m_selected = nullptr; }; // the rebuild takes the item away
    m_browser->ScanSelectedDevice();
    EXPECT_NE(Tree().FindObject(20, {2, 5}), nullptr);
    m_events.Take();
    m_browser->ScanSelectedDevice();
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(ObjBrowser, TheStatusOfADeviceIsReadAndOfNothingElse) {
    m_selected = Tree().FindObject(10, {2, 1});
    m_browser->ReadSelectedStatus();
    m_selected = Tree().FindType(10, 2);
    m_browser->ReadSelectedStatus();
    EXPECT_THAT(m_events.Take(), IsEmpty());
    m_selected = Tree().FindDevice(10);
    m_browser->ReadSelectedStatus();
    EXPECT_THAT(m_events.Take(), Contains("ReadPropertyMultiple(10, (2, 1) 111)"));
}

TEST_F(ObjBrowser, AChangedObjectIsReadSavedAndShown) {
    SetValue(10, {2, 1}, PROP_OBJECT_NAME, FakeValue::Text("renamed"));
    m_browser->UpdateObject(10, {2, 1});
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 77 28 87[0] 117)", "LoadDir()"));
    EXPECT_EQ(Tree().FindObject(10, {2, 1})->label, "renamed - 1");
    CBACnetDir file;
    ASSERT_TRUE(file.Load(m_folder.File("directory")));
    EXPECT_TRUE(file.FindObj(10, "renamed"));
}

TEST_F(ObjBrowser, AnObjectThatIsGoneGoes) {
    m_bacnet.SetFault("ReadPropertyMultiple", BACSTAC_STATUS_TIMEOUT);
    m_browser->UpdateObject(10, {2, 1});
    EXPECT_EQ(Tree().FindObject(10, {2, 1}), nullptr);
    EXPECT_NE(Tree().FindDevice(10), nullptr);
}

TEST_F(ObjBrowser, AChangeOnAnUnknownDeviceDoesNothing) {
    m_browser->UpdateObject(99, {2, 1});
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(ObjBrowser, AChangeDuringTheReadingOfStatusIsNoHarm) {
    m_selected = Tree().FindDevice(10);
    m_onPump = [this] {
        m_selected = nullptr;
        m_browser->UpdateObject(10, {2, 1});
    };
    m_browser->ReadSelectedStatus();
    EXPECT_NE(Tree().FindObject(10, {2, 1}), nullptr);
}

TEST_F(ObjBrowser, AStatusMessageForADeviceThatWentIsDropped) {
    m_browser->SetVisible(true);
    m_queue->Post([this] {
        m_filter = "alpha";
        m_browser->RebuildTree();
    });
    EXPECT_TRUE(m_queue->RunUntil([this] { return Devices() == std::vector<unsigned>{20}; }));
    m_queue->Run();
    EXPECT_EQ(Tree().FindDevice(20)->image, 0);
}
