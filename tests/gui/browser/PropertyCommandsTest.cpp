// The commands on properties as an operator uses them: with the menu, the buttons and the mouse, through the real
// editors.
#include "module/browser/ObjBrowserDlg.h"
#include "module/console/Busy.h"
#include "module/console/ProgressBarDlg.h"
#include "tests/gui/browser/BrowserPage.h"
#include "tests/gui/harness/Screenshot.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr BACSTAC_OBJECT_ID ZONE{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_PROPERTY_ID PROPRIETARY = 5000;
constexpr const char* REAL = "Input real";
constexpr const char* PRIORITY = "Input priority for writing";
constexpr const char* VIEWER = "View property value";

CDialogScript::Action Type(const std::string& label, const std::string& text) {
    return [=](const CControls& dialog) {
        dialog.Type(label, text);
        dialog.Press("OK");
    };
}

// On the thread of the windows; null when nobody waits.
CProgressBarDlg* Wait() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const wait = qobject_cast<CProgressBarDlg*>(widget); wait && wait->isVisible())
            return wait;
    return nullptr;
}

} // namespace

class PropertyPage : public BrowserPage {
protected:
    // The zone's three properties, that at the row selected: 0 the description, 1 the name, 2 the present value.
    void OpenZone(int row = 2) {
        Open();
        OnGui([this] { Select("zone - 1"); });
        ASSERT_TRUE(HasRows(3));
        OnGui([this, row] { ClickRow(row); });
        m_events.Take();
    }
    QPoint PlaceOf(int row) const { return List().visualRect(List().model()->index(row, 0)).center(); }
    void ClickRow(int row, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, modifiers, PlaceOf(row));
    }
    void SelectRows(const std::vector<int>& rows) const {
        List().clearSelection();
        for (const int row : rows)
            ClickRow(row, Qt::ControlModifier);
    }
    // A command of the menu that a right click on the row opens. Returns when its dialogs are gone.
    void Choose(int row, const std::string& command) {
        OnGui([&] {
            QMenu* const menu = MenuAt(List(), List().model()->index(row, 0));
            ASSERT_NE(menu, nullptr);
            ChooseEntry(*menu, {command});
        });
    }
    void MakeCommandable() {
        OnGui([this] { m_page->GetBrowser().GetDirectory().SetObjCommandable(10, ZONE, true); });
    }
    Lines Calls(const std::string& kind) {
        Lines calls;
        for (const std::string& event : m_events.Take())
            if (event.starts_with(kind))
                calls.push_back(event);
        return calls;
    }
    // The read before an edit stands, and its wait is shown.
    void BeginWait() {
        m_bacnet.SetSilent(true);
        PostToGui([this] { Page().Press("&Edit..."); });
        ASSERT_TRUE(EventuallyOnGui([] { return Wait() != nullptr; }));
    }
};

TEST_F(PropertyPage, AValueIsEditedWithItsButton) {
    OpenZone();
    MakeCommandable();
    CDialogScript script(m_asked);
    script.Do(REAL, Type("present-value", "22.5"));
    script.Do(PRIORITY, [](const CControls& dialog) {
        EXPECT_EQ(dialog.Only<QComboBox>().currentText(), QStringLiteral("08: Manual operator "));
        ChooseItem(dialog.Only<QComboBox>(), "16: Available");
        dialog.Press("OK");
    });
    OnGui([this] { Page().Press("&Edit..."); });
    EXPECT_THAT(Calls("WriteProperty"), ElementsAre("WriteProperty(10, (2, 1), 85, -1, 16, 22.5)"));
    ASSERT_TRUE(HasRows(3));
    OnGui([this] {
        EXPECT_THAT(Rows(), Contains("present-value = 22.5"));
        EXPECT_THAT(SelectedRows(), ElementsAre("present-value"));
    });
    script.Do(PRIORITY, [](const CControls& dialog) {
        EXPECT_EQ(dialog.Only<QComboBox>().currentText(), QStringLiteral("16: Available"));
        dialog.Press("Cancel");
    });
    Choose(2, "Set to &null...");
    EXPECT_THAT(Calls("Write"), IsEmpty());
}

TEST_F(PropertyPage, ADoubleClickEdits) {
    OpenZone(0);
    CDialogScript script(m_asked);
    script.Do("Input string", Type("description", "south"));
    OnGui([this] { QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, PlaceOf(0)); });
    EXPECT_THAT(Calls("WriteProperty"), ElementsAre("WriteProperty(10, (2, 1), 28, -1, -1, south)"));
}

TEST_F(PropertyPage, AFailedWriteAndACancelledPriorityKeepWhatWasTyped) {
    OpenZone();
    MakeCommandable();
    m_bacnet.SetFault("WriteProperty", BACSTAC_STATUS_ERROR, {2, 2, 40}, 0, 1);
    CDialogScript script(m_asked);
    const auto again = [](const char* button) {
        return [button](const CControls& dialog) {
            EXPECT_EQ(dialog.Get<QLineEdit>("present-value").text(), QStringLiteral("22.5"));
            dialog.Press(button);
        };
    };
    script.Do(REAL, Type("present-value", "22.5"));
    script.Press(PRIORITY, "Cancel");
    script.Do(REAL, again("OK"));
    script.Press(PRIORITY, "OK");
    script.Press("Error", "OK");
    script.Do(REAL, again("Cancel"));
    OnGui([this] { Page().Press("&Edit..."); });
    EXPECT_THAT(m_asked.Take(),
                ElementsAre("Dialog(Input real)", "Dialog(Input priority for writing)", "Dialog(Input real)",
                            "Dialog(Input priority for writing)",
                            "Box(Error, WriteProperty\nerror: write-access-denied (property), error, OK)",
                            "Dialog(Input real)"));
    EXPECT_THAT(m_events.Take(), testing::Not(Contains(StartsWith("ReadPropertyList"))));
    OnGui([this] { EXPECT_EQ(Rows().size(), 3U); });
}

TEST_F(PropertyPage, AValueIsShownWithoutAskingTheDevice) {
    Open();
    SetValue(10, ZONE, PROPRIETARY, FakeValue::Of<std::uint32_t>(TYPE_UNSIGNED, {1, 2}));
    OnGui([this] { Select("zone - 1"); });
    ASSERT_TRUE(HasRows(4));
    m_events.Take();
    CDialogScript script(m_asked);
    const auto show = [](const CControls& dialog) {
        EXPECT_EQ(dialog.Texts().front(), "Value of \"5000\" from \"zone - 1\"");
        dialog.Press("OK");
    };
    script.Do(VIEWER, show);
    script.Do(VIEWER, show);
    OnGui([this] { ClickRow(0); });
    Choose(0, "&Zoom...");
    OnGui([this] {
        Page().Press("&Zoom");
        SelectRows({0, 1});
    });
    Choose(0, "&Zoom...");
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(PropertyPage, AValueWithoutAnEditorOpensNothing) {
    OpenZone();
    SetValue(10, ZONE, PROP_PRESENT_VALUE, {TYPE_NULL, 1, ""});
    const CDialogScript script(m_asked);
    OnGui([this] { Page().Press("&Edit..."); });
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadProperty(10, (2, 1), 85, -1)"));
    EXPECT_THAT(m_asked.Take(), IsEmpty());
}

TEST_F(PropertyPage, AnElementIsAskedForByItsIndex) {
    OpenZone();
    CDialogScript script(m_asked);
    script.Do("Input unsigned", [](const CControls& dialog) {
        for (const char* const text : {"0", "2147483648"}) {
            dialog.Type("array-index", text);
            dialog.Press("OK"); // refused
        }
        dialog.Type("array-index", "3");
        dialog.Press("OK");
    });
    script.Press("Error", "OK");
    script.Press("Error", "OK");
    script.Press(REAL, "OK");
    Choose(2, "Edit array &item...");
    EXPECT_THAT(m_events.Take(),
                ElementsAre("ReadProperty(10, (2, 1), 85, 3)", "WriteProperty(10, (2, 1), 85, 3, -1, 21.5)"));
    ASSERT_TRUE(HasRows(3));
    script.Do("Input unsigned", [](const CControls& dialog) {
        EXPECT_EQ(dialog.Get<QWidget>("array-index").findChild<QLineEdit*>()->text(), QStringLiteral("3"));
        dialog.Press("Cancel");
    });
    Choose(2, "Edit array &item...");
}

TEST_F(PropertyPage, PropertiesAreCopiedAndPasted) {
    OpenZone();
    OnGui([this] {
        QGuiApplication::clipboard()->setText(QStringLiteral("mine"));
        SelectRows({0, 2});
    });
    Choose(0, "&Copy");
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 28 85)"));
    AddObject(20, {2, 9}, "roof");
    CBACnetObj roof;
    roof.SetId({2, 9});
    roof.SetName("roof");
    OnGui([&] {
        m_page->GetBrowser().GetDirectory().AddObj(20, roof);
        m_page->GetBrowser().RebuildTree();
        Select("roof - 9");
    });
    ASSERT_TRUE(HasRows(1));
    m_events.Take();
    Choose(0, "&Paste");
    EXPECT_EQ(m_events.Take().front(), "WritePropertyMultiple(20, (2, 9), 28 of the\r\nzone, 85 21.5)");
    OnGui([] { EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("mine")); });
    EXPECT_TRUE(HasRows(3));
}

TEST_F(PropertyPage, WhatWasCopiedGoesWithThePage) {
    OpenZone();
    Choose(2, "&Copy");
    OnGui([this] {
        m_page->Destroy();
        m_page = nullptr;
        m_window.reset();
    });
}

// ---- the wait

TEST_F(PropertyPage, AClosedWaitGivesTheReadUp) {
    OpenZone();
    BeginWait();
    CDialogScript script(m_asked);
    script.Press("Error", "OK");
    script.Press(VIEWER, "OK");
    const auto start = Clock::now();
    OnGui([] {
        EXPECT_FALSE(Wait()->parentWidget()->window()->isEnabled());
        TakeScreenshot(*Wait(), "wait-for-device");
        Wait()->close();
    });
    ASSERT_TRUE(Eventually([this] { return !m_asked.Get().empty(); }));
    EXPECT_LT(Since(start), Milliseconds(200));
    ASSERT_TRUE(EventuallyOnGui([] { return !CBusyScope::IsBusy(); }));
    EXPECT_THAT(m_asked.Take(),
                ElementsAre("Box(Error, ReadProperty\n" + CBacGeneral::GetErrorText(BACSTAC_STATUS_CANCELLED, nullptr) +
                                ", error, OK)",
                            "Dialog(View property value)"));
    EXPECT_THAT(Calls("ReadProperty("), IsEmpty());
    OnGui([this] { EXPECT_TRUE(m_window->isEnabled()); });
}

TEST_F(PropertyPage, NoOtherCommandRunsDuringTheWait) {
    OpenZone();
    BeginWait();
    CDialogScript script(m_asked);
    OnGui([this] { EXPECT_EQ(MenuAt(List(), List().model()->index(2, 0)), nullptr); });
    script.Press(REAL, "Cancel");
    m_bacnet.SetSilent(false);
    ASSERT_TRUE(EventuallyOnGui([] { return !CBusyScope::IsBusy(); }));
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadProperty(10, (2, 1), 85, -1)"));
}

// As when the driver hears meanwhile that the object has changed.
TEST_F(PropertyPage, AnotherSelectionDuringTheWaitIsWhereTheValueGoes) {
    OpenZone();
    BeginWait();
    CDialogScript script(m_asked);
    script.Press(REAL, "OK");
    script.Press(REAL, "Cancel");
    OnGui([this] { m_page->ObjectChanged(10, ZONE); });
    m_events.Take();
    m_bacnet.SetSilent(false);
    ASSERT_TRUE(EventuallyOnGui([] { return !CBusyScope::IsBusy(); }));
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadProperty(10, (2, 1), 85, -1)")); // nothing is selected any more
    EXPECT_THAT(m_asked.Take(), ElementsAre("Dialog(Input real)", "Dialog(Input real)"));
}
