// The picker of trigger tags, driven through its widgets.
#include "module/console/SelectTagDlg.h"
#include "module/console/Busy.h"
#include "tests/gui/ConsoleFixture.h"

#include <QComboBox>

namespace {

using ::testing::ElementsAre;

class SelectTag : public ConsoleFixture {
protected:
    SelectTag() {
        m_kernel.AddTag(0, "B");
        m_kernel.AddTag(1, "gone");
        m_kernel.SetDefinitionResult(1, QL_NO_RESOURCES);
        m_kernel.AddTag(2, "N", 0, TAG_TYPE_ANALOG);
        m_kernel.AddTag(3, "A");
        m_kernel.AddTag(4, "BB");
        m_kernel.AddTag(5, "Zul\u00E4ufe");
        Start();
        m_events.Take();
    }

    struct Outcome {
        std::string shown;
        std::string tag;
    };
    // Opens the picker on a tag, chooses an item if one is given, and presses a button.
    Outcome Pick(const std::string& tag, const std::string& item, const std::string& button) {
        Outcome outcome;
        CDialogScript script(m_events);
        script.Do("Select trigger tag", [&](const CControls& dialog) {
            auto& list = dialog.Only<QComboBox>();
            outcome.shown = list.currentText().toStdString();
            if (!item.empty())
                ChooseItem(list, item);
            dialog.Press(button);
        });
        OnGui([&] {
            CSelectTagDlg dialog(ConsoleWindow(), tag);
            RunModal(dialog);
            outcome.tag = dialog.GetTag();
        });
        return outcome;
    }
};

TEST_F(SelectTag, TheListHoldsNoneAndTheDigitalTagsInTheKernelsOrder) {
    const auto rows = OnGui([] {
        QComboBox combo;
        combo.addItem(QStringLiteral("old"));
        BDCManager.FillTagList(combo);
        return ItemsOf(combo);
    });
    EXPECT_THAT(rows, ElementsAre("<None>", "B", "A", "BB", "Zul\u00E4ufe"));
}

TEST_F(SelectTag, AKernelWithoutTagsLeavesNone) {
    m_kernel.SetResult("OpenTagEnumeration", QL_NO_SUCH_TAG);
    OnGui([&] {
        QComboBox combo;
        BDCManager.FillTagList(combo);
        EXPECT_THAT(ItemsOf(combo), ElementsAre("<None>"));
    });
    EXPECT_THAT(m_events.Take(), ElementsAre("OpenTagEnumeration(7)"));
}

TEST_F(SelectTag, OpensOnTheTagItIsGiven) {
    EXPECT_EQ(Pick("B", "", "OK").shown, "B");
    EXPECT_EQ(Pick("BB", "", "OK").shown, "BB");
    EXPECT_EQ(Pick("Zul\u00E4ufe", "", "OK").shown, "Zul\u00E4ufe");
    for (const char* unknown : {"", "zz", "b", "N", "<None>"})
        EXPECT_EQ(Pick(unknown, "", "OK").shown, "<None>") << unknown;
}

TEST_F(SelectTag, OkGivesTheChosenTag) {
    EXPECT_EQ(Pick("B", "", "OK").tag, "B");
    EXPECT_EQ(Pick("B", "A", "OK").tag, "A");
    EXPECT_EQ(Pick("B", "Zul\u00E4ufe", "OK").tag, "Zul\u00E4ufe");
    EXPECT_EQ(Pick("B", "<None>", "OK").tag, "");
    EXPECT_EQ(Pick("zz", "", "OK").tag, "");
}

TEST_F(SelectTag, CancelKeepsTheTag) {
    EXPECT_EQ(Pick("zz", "A", "Cancel").tag, "zz");
}

} // namespace
