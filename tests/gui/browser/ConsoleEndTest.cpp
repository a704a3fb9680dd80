// The end of the console while its browser waits for a device or an operator edits. The sanitizers watch over it.
#include "module/console/ProgressBarDlg.h"
#include "tests/gui/browser/BrowserConsole.h"

#include <QApplication>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr BACSTAC_OBJECT_ID ZONE{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_PROPERTY_ID LIST = 5000;

} // namespace

class EndOfEdits : public BrowserConsole {
protected:
    // The zone's present value is selected. It has a list of numbers, too.
    void OpenZone() {
        OpenConsole();
        SetValue(10, ZONE, LIST, FakeValue::Of<float>(TYPE_REAL, {1.5F, 2.5F}));
        OnGui([this] { Select("zone - 1"); });
        ASSERT_TRUE(HasRows(4));
        m_events.Take();
    }
    void BeginEdit() {
        PostToGui([this] { Page().Press("&Edit..."); });
    }
};

TEST_F(EndOfEdits, EndsUnderAnEditorThreeDeep) {
    OpenZone();
    OnGui([this] { List().setCurrentIndex(List().model()->index(0, 0)); });
    {
        CDialogScript script(m_asked);
        script.Leave("Input list of real");
        script.Leave("Input real");
        script.Leave("Error");
        BeginEdit();
        ASSERT_TRUE(IsModalOpen("Input list of real"));
        PostToGui([] { CControls(ModalDialog()).Press("Edit"); });
        ASSERT_TRUE(IsModalOpen("Input real"));
        PostToGui([] {
            CControls(ModalDialog()).Type("5000", "no number");
            CControls(ModalDialog()).Press("OK");
        });
        ASSERT_TRUE(IsModalOpen("Error"));
    }
    EXPECT_TRUE(End());
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadProperty(10, (2, 1), 5000, -1)"));
}

TEST_F(EndOfEdits, EndsUnderAnEditorWhoseValueWasNotWritten) {
    OpenZone();
    m_bacnet.SetFault("WriteProperty", BACSTAC_STATUS_TIMEOUT);
    {
        CDialogScript script(m_asked);
        script.Press("Input real", "OK");
        script.Leave("Error");
        BeginEdit();
        ASSERT_TRUE(IsModalOpen("Error"));
    }
    EXPECT_TRUE(End());
    EXPECT_THAT(m_events.Take(),
                ElementsAre("ReadProperty(10, (2, 1), 85, -1)", "WriteProperty(10, (2, 1), 85, -1, -1, 21.5)"));
}

TEST_F(EndOfEdits, EndsDuringTheWaitForADevice) {
    OpenZone();
    m_bacnet.SetSilent(true);
    BeginEdit();
    ASSERT_TRUE(EventuallyOnGui([] {
        return std::ranges::any_of(QApplication::topLevelWidgets(),
                                   [](QWidget* widget) { return qobject_cast<CProgressBarDlg*>(widget) != nullptr; });
    }));
    EXPECT_TRUE(End());
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(EndOfEdits, EndsWithWhatWasCopied) {
    OpenZone();
    OnGui([this] {
        QMenu* const menu = MenuAt(List(), List().model()->index(3, 0));
        ASSERT_NE(menu, nullptr);
        ChooseEntry(*menu, {"&Copy"});
    });
    EXPECT_TRUE(End());
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 85)"));
}
