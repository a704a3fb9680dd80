// The picker of trigger tags, driven through its widgets.
#include "module/console/SelectTagDlg.h"

#include "tests/gui/ConsoleFixture.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>

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
    // Opens the picker on a tag, chooses a row if one is given, and presses a button.
    Outcome Pick(const std::string& tag, int row, QDialogButtonBox::StandardButton button) {
        Outcome outcome;
        OnGui([&] {
            CSelectTagDlg dialog(ConsoleWindow(), tag);
            EXPECT_EQ(dialog.windowTitle().toStdString(), "Select trigger tag");
            auto* const combo = dialog.findChild<QComboBox*>();
            outcome.shown = combo->currentText().toStdString();
            if (row >= 0)
                combo->setCurrentIndex(row);
            dialog.findChild<QDialogButtonBox*>()->button(button)->click();
            outcome.tag = dialog.GetTag();
        });
        return outcome;
    }
};

TEST_F(SelectTag, TheListHoldsNoneAndTheDigitalTagsInTheKernelsOrder) {
    std::vector<std::string> rows;
    OnGui([&] {
        QComboBox combo;
        combo.addItem(QStringLiteral("old"));
        BDCManager.FillTagList(combo);
        for (int row = 0; row < combo.count(); ++row)
            rows.push_back(combo.itemText(row).toStdString());
    });
    EXPECT_THAT(rows, ElementsAre("<None>", "B", "A", "BB", "Zul\u00E4ufe"));
}

TEST_F(SelectTag, AKernelWithoutTagsLeavesNone) {
    m_kernel.SetResult("OpenTagEnumeration", QL_NO_SUCH_TAG);
    OnGui([&] {
        QComboBox combo;
        BDCManager.FillTagList(combo);
        EXPECT_EQ(combo.count(), 1);
        EXPECT_EQ(combo.itemText(0).toStdString(), "<None>");
    });
    EXPECT_THAT(m_events.Take(), ElementsAre("OpenTagEnumeration(7)"));
}

TEST_F(SelectTag, OpensOnTheTagItIsGiven) {
    EXPECT_EQ(Pick("B", -1, QDialogButtonBox::Ok).shown, "B");
    EXPECT_EQ(Pick("BB", -1, QDialogButtonBox::Ok).shown, "BB");
    EXPECT_EQ(Pick("Zul\u00E4ufe", -1, QDialogButtonBox::Ok).shown, "Zul\u00E4ufe");
    for (const char* unknown : {"", "zz", "b", "N", "<None>"})
        EXPECT_EQ(Pick(unknown, -1, QDialogButtonBox::Ok).shown, "<None>") << unknown;
}

TEST_F(SelectTag, OkGivesTheChosenTag) {
    EXPECT_EQ(Pick("B", -1, QDialogButtonBox::Ok).tag, "B");
    EXPECT_EQ(Pick("B", 2, QDialogButtonBox::Ok).tag, "A");
    EXPECT_EQ(Pick("B", 4, QDialogButtonBox::Ok).tag, "Zul\u00E4ufe");
    EXPECT_EQ(Pick("B", 0, QDialogButtonBox::Ok).tag, "");
    EXPECT_EQ(Pick("zz", -1, QDialogButtonBox::Ok).tag, "");
}

TEST_F(SelectTag, CancelKeepsTheTag) {
    EXPECT_EQ(Pick("zz", 2, QDialogButtonBox::Cancel).tag, "zz");
}

} // namespace
