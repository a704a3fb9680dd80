// The Browser page and its dialog in each of their states, examined as all windows are. The devices are in memory.
#include "module/browser/DiscoverDevicesDlg.h"
#include "module/browser/ObjBrowserDlg.h"
#include "module/console/Busy.h"
#include "module/console/GuiOperator.h"
#include "module/console/ProgressBarDlg.h"
#include "tests/gui/browser/BrowserPage.h"
#include "tests/gui/look/Examine.h"

#include <QApplication>
#include <QLineEdit>

namespace {

constexpr BACSTAC_PROPERTY_ID PROP_OUT_OF_SERVICE = 81;
constexpr BACSTAC_OBJECT_ID SUPPLY{OBJ_ANALOG_VALUE, 1};

class BrowserLook : public BrowserPage {
protected:
    BrowserLook() { OnGui(UseDesktopOfTheRun); }

    // Three devices; the first answers.
    void OpenBuilding() {
        const std::vector<NamedObject> objects{{SUPPLY, "Supply air temperature"},
                                               {{2, 2}, "Room setpoint"},
                                               {{0, 5}, "Outside temperature"},
                                               {{5, 1}, "Fan released"},
                                               {{20, 1}, "Supply air history"}};
        CBACnetDir directory;
        for (const auto& [device, name] : {std::pair(10U, "Air handling unit 1"), std::pair(20U, "Boiler"),
                                           std::pair(30U, "Heating circuits, north wing")}) {
            AddDevice(device, name, device == 30 ? 7 : 0);
            PutDevice(directory, device, name, 0, objects);
            directory.SetDevAddr(device, m_bacnet.GetDevAddr(device));
        }
        for (const auto& [id, name] : objects) {
            AddObject(10, id, name);
            SetValue(10, id, PROP_DESCRIPTION, FakeValue::Text("Roof, east of the stairs"));
            SetValue(10, id, PROP_PRESENT_VALUE, FakeValue::Real(21.5F));
            SetValue(10, id, PROP_OUT_OF_SERVICE, FakeValue::Of<std::uint32_t>(TYPE_BOOLEAN, {0}));
        }
        Save(directory);
        OpenPage();
    }
    // The status flags of the objects of the first device: fine, out of service, in alarm, and both.
    void SetFlags() {
        unsigned number = 0;
        for (const BACSTAC_OBJECT_ID& id : {SUPPLY, BACSTAC_OBJECT_ID{2, 2}, BACSTAC_OBJECT_ID{0, 5}, {5, 1}}) {
            BACSTAC_BIT_STRING flags{4, {}};
            CBacGeneral::SetBitStringBit(flags, 3, (number & 1) != 0);
            CBacGeneral::SetBitStringBit(flags, 0, (number & 2) != 0);
            SetValue(10, id, PROP_STATUS_FLAGS, FakeValue::Of<BACSTAC_BIT_STRING>(TYPE_BIT_STRING, {flags}));
            ++number;
        }
    }
    void ExaminePage(const std::string& name) {
        OnGui([&] {
            m_window->resize(900, 450);
            Examine(*m_window, "browser " + name);
        });
    }
};

TEST_F(BrowserLook, WithNothingKnown) {
    OpenPage();
    ExaminePage("empty");
}

TEST_F(BrowserLook, WithLiveProperties) {
    OpenBuilding();
    OnGui([this] { Select("Supply air temperature - 1"); });
    ASSERT_TRUE(HasRows(4));
    ExaminePage("live");
}

TEST_F(BrowserLook, WhileItReads) {
    OpenBuilding();
    m_bacnet.LeaveOutOfLists(10, SUPPLY, PROP_DESCRIPTION);
    Hang("ReadProperty(10, (2, 1)");
    OnGui([this] { Select("Supply air temperature - 1"); });
    ASSERT_TRUE(Eventually([this] { return HasHung(); }));
    ExaminePage("reading");
}

TEST_F(BrowserLook, WithADeviceThatDoesNotAnswer) {
    OpenBuilding();
    m_bacnet.SetFault("ReadPropertyList", BACSTAC_STATUS_TIMEOUT);
    OnGui([this] { Select("Boiler - 20"); });
    ASSERT_TRUE(HasRows(1));
    ExaminePage("error");
}

TEST_F(BrowserLook, WithTheStatusOfDevicesAndObjects) {
    OpenBuilding();
    SetFlags();
    SetValue(10, Device(10), 112, FakeValue::Of<std::uint32_t>(TYPE_ENUMERATED, {0}));
    OnGui([this] {
        for (const char* const label : {"Supply air temperature - 1", "Outside temperature - 5", "Fan released - 1"})
            ASSERT_TRUE(Item(label).isValid());
        Select("Air handling unit 1 - 10");
        m_page->GetBrowser().ReadSelectedStatus();
    });
    ASSERT_TRUE(EventuallyOnGui([this] {
        m_page->Shown(); // wakes the monitor
        return HasImage("Air handling unit 1 - 10", 2) && HasImage("Boiler - 20", 1);
    }));
    ASSERT_TRUE(HasRows(2));
    OnGui([this] { m_window->setMinimumHeight(600); });
    ExaminePage("status");
}

TEST_F(BrowserLook, BehindAFilterThatNothingPasses) {
    OpenBuilding();
    OnGui([this] { Page().Type("&Filter", "no such name"); });
    ExaminePage("filter");
}

TEST_F(BrowserLook, DuringAScan) {
    OpenBuilding();
    std::atomic<int> requests = 0;
    m_bacnet.OnCall([&](const std::string& call) {
        if (!call.starts_with("ReadPropertyMultiple") || ++requests != 3)
            return;
        PostToGui([this] {
            for (QWidget* const widget : QApplication::topLevelWidgets())
                if (qobject_cast<CProgressBarDlg*>(widget) && widget->isVisible())
                    Examine(*widget, "browser scan progress");
            ExaminePage("scan");
        });
    });
    OnGui([this] {
        Select("Air handling unit 1 - 10");
        m_page->GetBrowser().ScanSelectedDevice();
    });
    EXPECT_GT(requests, 3);
}

TEST_F(BrowserLook, WithTwoStationsOfOneInstance) {
    for (const unsigned device : {10U, 20U, 4194302U})
        m_bacnet.AddDevice(device, 0, "device");
    OnGui([this] {
        CDiscovery discovery(m_bacnet, 1);
        CDiscoverDevicesDlg dialog(nullptr, m_bacnet, *CGuiOperator::Get(), discovery);
        dialog.show();
        Examine(dialog, "discover devices empty");
        const auto address = [](std::uint8_t last, std::uint16_t network) {
            return BACSTAC_ADDRESS{
                static_cast<std::uint8_t>(network != 0), 0, network, {192, 168, 178, last, 186, 192}, 6};
        };
        m_bacnet.AnnounceDevice(address(100, 0), 10);
        m_bacnet.AnnounceDevice(address(101, 0), 20);
        m_bacnet.AnnounceDevice(address(102, 0), 20);
        m_bacnet.AnnounceDevice(address(200, 65534), 4194302);
        const CControls controls(dialog);
        auto& list = controls.Only<QTreeView>();
        while (list.model()->rowCount() == 0)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        list.model()->setData(list.model()->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
        dialog.resize(dialog.sizeHint());
        Examine(dialog, "discover devices");
    });
}

} // namespace
