// The browser's page as an operator uses it.
#include "tests/gui/browser/BrowserPage.h"
#include "module/browser/BrowserTree.h"
#include "module/browser/Images.h"
#include "module/browser/ObjBrowserDlg.h"
#include "module/console/Busy.h"
#include "module/widgets/SpinEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(BrowserPage, ShowsTheTreeWithItsNetworkOpen) {
    Open();
    OnGui([this] {
        const QAbstractItemModel& model = *Tree().model();
        ASSERT_EQ(model.rowCount(), 1);
        const QModelIndex network = model.index(0, 0);
        EXPECT_EQ(network.data().toString(), QStringLiteral("Network 1"));
        EXPECT_TRUE(Tree().isExpanded(network));
        EXPECT_EQ(model.index(0, 0, network).data().toString(), QStringLiteral("alpha - 20"));
        EXPECT_EQ(model.index(1, 0, network).data().toString(), QStringLiteral("Beta - 10"));
        EXPECT_FALSE(Tree().isExpanded(model.index(1, 0, network)));
        EXPECT_TRUE(model.hasChildren(model.index(0, 0, network)));
    });
}

TEST_F(BrowserPage, SelectingAnObjectShowsItsProperties) {
    Open();
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(HasRows(3));
    OnGui([this] {
        EXPECT_THAT(Rows(), ElementsAre("description = of the zone", "object-name = zone", "present-value = 21.5"));
        EXPECT_THAT(SelectedRows(), ElementsAre("present-value"));
        EXPECT_TRUE(Page().Get<QPushButton>("&Edit...").isEnabled());
        EXPECT_TRUE(Page().Get<QPushButton>("&Zoom").isEnabled());
        EXPECT_EQ(List().model()->index(2, 2).data().toString(), QStringLiteral("85"));
    });
}

TEST_F(BrowserPage, TheRowOfTheOperatorsChoiceIsSelectedAgain) {
    Open();
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(HasRows(3));
    OnGui([this] {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {},
                          List().visualRect(List().model()->index(0, 0)).center());
        Page().Press("Refresh &now");
        EXPECT_THAT(Rows(), IsEmpty());
        EXPECT_FALSE(Page().Get<QPushButton>("&Edit...").isEnabled());
    });
    ASSERT_TRUE(HasRows(3));
    OnGui([this] {
        EXPECT_THAT(SelectedRows(), ElementsAre("description"));
        Tree().setFocus();
        EXPECT_THAT(SelectedRows(), ElementsAre("description"));
        Select("alpha - 20"); // has no description
    });
    ASSERT_TRUE(HasRows(1));
    OnGui([this] { EXPECT_THAT(SelectedRows(), IsEmpty()); });
}

TEST_F(BrowserPage, RowsStandInTheOrderOfTheirNamesUntilAnotherIsChosen) {
    Open();
    SetValue(10, {2, 1}, 17, FakeValue::Unsigned(1)); // comes first
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(HasRows(4));
    OnGui([this] {
        EXPECT_THAT(Rows(), ElementsAre("description = of the zone", "notification-class = 1", "object-name = zone",
                                        "present-value = 21.5"));
        const auto icon = List().model()->index(1, 0).data(Qt::DecorationRole).value<QIcon>();
        EXPECT_EQ(icon.cacheKey(), BrowserImage(IMAGE_PROPERTY, STATE_NONE).cacheKey());
        QHeaderView& header = *List().header();
        const int place = header.sectionViewportPosition(2) + 10;
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(place, header.height() / 2));
        List().setColumnWidth(0, 200);
        Page().Press("Refresh &now");
    });
    ASSERT_TRUE(HasRows(4));
    OnGui([this] {
        EXPECT_THAT(Rows(), ElementsAre("notification-class = 1", "description = of the zone", "object-name = zone",
                                        "present-value = 21.5"));
        EXPECT_EQ(List().columnWidth(0), 200);
    });
}

TEST_F(BrowserPage, CommandsGetTheSelectedRowsInTheOrderOfTheList) {
    Open();
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(HasRows(3));
    OnGui([this] {
        for (const int row : {2, 0})
            QTest::mouseClick(List().viewport(), Qt::LeftButton, row == 0 ? Qt::ControlModifier : Qt::NoModifier,
                              List().visualRect(List().model()->index(row, 0)).center());
        BrowserSelection selection;
        EXPECT_FALSE(m_page->GetBrowser().GetSelection(selection, true));
        EXPECT_TRUE(m_page->GetBrowser().GetSelection(selection, false));
        EXPECT_THAT(selection.properties, ElementsAre(PROP_DESCRIPTION, PROP_PRESENT_VALUE));
    });
}

TEST_F(BrowserPage, TheListHasItsColumnsAndFillsTheirPlace) {
    Open();
    OnGui([this] {
        const QHeaderView& header = *List().header();
        EXPECT_EQ(header.sectionSize(0), 160);
        EXPECT_EQ(header.sectionSize(2), 50);
        EXPECT_EQ(header.sectionSize(1), List().viewport()->width() - 210);
        m_window->resize(1100, 450);
    });
    EXPECT_TRUE(EventuallyOnGui([this] { return List().header()->length() == List().viewport()->width(); }));
}

TEST_F(BrowserPage, EachKindOfItemHasItsMenu) {
    Open();
    const auto menu = [this](const char* label) {
        const QModelIndex item = label ? Item(label) : QModelIndex();
        QMenu* const opened = MenuAt(Tree(), item);
        const Lines entries = opened ? EntriesOf(*opened) : Lines{"none"};
        EXPECT_TRUE(!item.isValid() || Tree().selectionModel()->isSelected(item));
        if (opened)
            opened->close();
        return entries;
    };
    OnGui([&] {
        EXPECT_THAT(menu("Beta - 10"),
                    ElementsAre("&Insert device...", "&Modify device...", "&Remove device...", "&Scan device", "-",
                                "&Insert object...", "&Create object...", "Read objects status", "-", "Communication",
                                "Reboot", "Backup...", "Restore...", "Abort restore..."));
        QMenu* const device = MenuAt(Tree(), Item("Beta - 10"));
        ASSERT_NE(device, nullptr);
        EXPECT_THAT(EntriesOf(*Entry(*device, {"Communication"}).menu()),
                    ElementsAre("Enable", "Disable", "Disable initiation"));
        EXPECT_THAT(EntriesOf(*Entry(*device, {"Reboot"}).menu()), ElementsAre("Cold", "Warm"));
        device->close();
        EXPECT_THAT(menu("Network 1"), ElementsAre("&Insert device..."));
        EXPECT_THAT(menu(nullptr), ElementsAre("&Insert device..."));
        EXPECT_THAT(menu("analog-value"), ElementsAre("&Insert object...", "&Create object..."));
        EXPECT_THAT(menu("zone - 1"), ElementsAre("&Insert object...", "&Modify object...", "&Remove object...", "-",
                                                  "&Create object...", "&Delete object...", "-",
                                                  "&Save file contents to...", "&Restore file contents from..."));
    });
}

TEST_F(BrowserPage, OnlyFilesHaveContents) {
    Open();
    OnGui([this] {
        for (const auto& [label, isFile] : {std::pair("zone - 1", false), std::pair("File - 1", true)}) {
            QMenu* const menu = MenuAt(Tree(), Item(label));
            ASSERT_NE(menu, nullptr);
            EXPECT_EQ(Entry(*menu, {"&Save file contents to..."}).isEnabled(), isFile);
            EXPECT_EQ(Entry(*menu, {"&Restore file contents from..."}).isEnabled(), isFile);
            EXPECT_TRUE(Entry(*menu, {"&Delete object..."}).isEnabled());
            menu->close();
        }
    });
}

TEST_F(BrowserPage, ARightClickAddsARowToTheSelection) {
    Open();
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(HasRows(3));
    OnGui([this] {
        QMenu* const menu = MenuAt(List(), List().model()->index(0, 0));
        ASSERT_NE(menu, nullptr);
        EXPECT_THAT(EntriesOf(*menu), ElementsAre("&Zoom...", "&Edit...", "Edit array &item...", "Set to &null...", "-",
                                                  "&Copy", "&Paste"));
        menu->close();
        EXPECT_THAT(SelectedRows(), testing::UnorderedElementsAre("present-value", "description"));
        EXPECT_FALSE(Page().Get<QPushButton>("&Zoom").isEnabled());
        EXPECT_EQ(MenuAt(List(), {}), nullptr);
    });
}

TEST_F(BrowserPage, TheRowsCanBeCopiedAsText) {
    Open();
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(HasRows(3));
    OnGui([this] {
        List().setFocus();
        PressKey(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("present-value\t21.5\t85"));
    });
}

TEST_F(BrowserPage, TypingFiltersTheTree) {
    Open();
    OnGui([this] {
        Page().Type("&Filter", "alpha");
        EXPECT_EQ(Tree().model()->rowCount(), 0);
    });
    ASSERT_TRUE(EventuallyOnGui([this] { return Tree().model()->rowCount() == 1; }));
    OnGui([this] {
        EXPECT_TRUE(Item("alpha - 20").isValid());
        EXPECT_FALSE(Item("Beta - 10").isValid());
        for (QAction* const action : Page().Get<QLineEdit>("&Filter").actions())
            action->trigger(); // the icon
        EXPECT_EQ(Page().Get<QLineEdit>("&Filter").text(), QString());
    });
    EXPECT_TRUE(EventuallyOnGui([this] { return Item("Beta - 10").isValid(); }));
}

TEST_F(BrowserPage, AutoRefreshAsksForItsPeriod) {
    Open();
    CDialogScript script(m_asked);
    script.Press("Input", "Cancel");
    script.Do("Input", [](const CControls& dialog) {
        EXPECT_EQ(dialog.Only<CSpinEdit>().GetText(), QStringLiteral("5"));
        EXPECT_THAT(dialog.Texts(), ElementsAre("Refresh period", "s"));
        PressKey(Qt::Key_Down);
        EXPECT_EQ(dialog.Only<CSpinEdit>().GetText(), QStringLiteral("5"));
        TypeInto(dialog.Only<CSpinEdit>(), "3600");
        PressKey(Qt::Key_Up);
        EXPECT_EQ(dialog.Only<CSpinEdit>().GetText(), QStringLiteral("3600"));
        TypeInto(dialog.Only<CSpinEdit>(), "6");
        dialog.Press("OK");
    });
    OnGui([this] {
        Page().Press("Aut&o refresh");
        EXPECT_FALSE(Page().Get<QAbstractButton>("Aut&o refresh").isChecked());
        Page().Press("Aut&o refresh");
        EXPECT_TRUE(Page().Get<QAbstractButton>("Aut&o refresh").isChecked());
        Page().Press("Aut&o refresh");
        EXPECT_FALSE(Page().Get<QAbstractButton>("Aut&o refresh").isChecked());
    });
}

TEST_F(BrowserPage, ATickWaitsUntilAModalDialogIsGone) {
    Open();
    std::optional<CBusyScope> busy;
    OnGui([&] {
        Select("zone - 1");
        busy.emplace();
    });
    std::this_thread::sleep_for(Milliseconds(600)); // more than two ticks
    EXPECT_THAT(m_events.Take(), testing::Not(testing::Contains(testing::StartsWith("ReadPropertyList"))));
    OnGui([&] { busy.reset(); });
    EXPECT_TRUE(HasRows(3));
}

TEST_F(BrowserPage, ReadingCanBeCancelled) {
    Open();
    m_bacnet.LeaveOutOfLists(10, {2, 1}, PROP_DESCRIPTION);
    Hang("ReadProperty(10, (2, 1)");
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(Eventually([this] { return HasHung(); }));
    EXPECT_TRUE(EventuallyOnGui([this] { return Page().Texts().size() > 2; }));
    OnGui([this] {
        EXPECT_FALSE(List().isEnabled());
        Page().Press("Cancel");
        EXPECT_FALSE(Page().Get<QPushButton>("Cancel").isEnabled());
        EXPECT_FALSE(m_page->findChild<QProgressBar*>()->parentWidget()->isHidden());
    });
    LetGo();
    EXPECT_TRUE(EventuallyOnGui([this] { return List().isEnabled(); }));
    OnGui([this] {
        EXPECT_THAT(Rows(), IsEmpty());
        EXPECT_TRUE(m_page->findChild<QProgressBar*>()->parentWidget()->isHidden());
    });
}

TEST_F(BrowserPage, DiscoveredDevicesAreScannedIntoTheTree) {
    Open();
    AddDevice(30, "gamma");
    AddObject(30, {2, 7}, "pump");
    CDialogScript script(m_asked);
    script.Do("Discover devices", [this](const CControls& dialog) {
        dialog.Press("Send Who-Is");
        m_bacnet.AnnounceDevice(m_bacnet.GetDevAddr(30), 30);
        for (const auto deadline = Clock::now() + std::chrono::seconds(10);
             dialog.Only<QTreeView>().model()->rowCount() == 0 && Clock::now() < deadline;)
            QTest::qWait(10);
        dialog.Press("OK");
    });
    OnGui([this] {
        Page().Press("&Discover && scan");
        EXPECT_TRUE(Item("pump - 7").isValid());
    });
}

TEST_F(BrowserPage, StatusOfObjectsShowsAsImages) {
    Open();
    BACSTAC_BIT_STRING flags{4, {}};
    CBacGeneral::SetBitStringBit(flags, 0, true);
    SetValue(10, {2, 1}, PROP_STATUS_FLAGS, FakeValue::Of<BACSTAC_BIT_STRING>(TYPE_BIT_STRING, {flags}));
    OnGui([this] {
        const auto image = [this](const char* label) {
            return Item(label).data(Qt::DecorationRole).value<QIcon>().cacheKey();
        };
        const auto before = image("zone - 1");
        QMenu* const menu = MenuAt(Tree(), Item("Beta - 10"));
        ASSERT_NE(menu, nullptr);
        ChooseEntry(*menu, {"Read objects status"});
        EXPECT_NE(image("zone - 1"), before);
        EXPECT_EQ(image("Area - 2"), before);
    });
}

TEST_F(BrowserPage, TheTreeMayBeRebuiltUnderAnOpenMenu) {
    Open();
    OnGui([this] {
        QMenu* const menu = MenuAt(Tree(), Item("Beta - 10"));
        ASSERT_NE(menu, nullptr);
        m_page->Cancelled();
        m_events.Take();
        ChooseEntry(*menu, {"&Scan device"});
        EXPECT_THAT(m_events.Take(), IsEmpty()); // nothing is selected any more
    });
}
