// The harness fails where it should, and uses controls as an operator can.
#include "module/console/Busy.h"
#include "module/console/GuiOperator.h"
#include "tests/gui/harness/Controls.h"
#include "tests/gui/harness/DialogScript.h"
#include "tests/gui/harness/GuiAccess.h"
#include "tests/gui/harness/Screenshot.h"
#include "tests/support/TempFolder.h"

#include <QCheckBox>
#include <QDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include <filesystem>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A form with one of each, in the thread of the windows.
struct Form {
    QDialog window;
    QLineEdit* const name = new QLineEdit(QStringLiteral("old"));
    QCheckBox* const wide = new QCheckBox(QStringLiteral("&Log && print"));
    QComboBox* const list = new QComboBox;
    QGroupBox* const group = new QGroupBox(QStringLiteral("Inner"));

    Form() {
        window.setWindowTitle(QStringLiteral("Form"));
        list->setAccessibleName(QStringLiteral("Kind"));
        list->addItems({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
        (new QVBoxLayout(group))->addWidget(new QPushButton(QStringLiteral("Set")));
        auto* const layout = new QFormLayout(&window);
        layout->addRow(QStringLiteral("&Name"), name);
        for (QWidget* const row : std::initializer_list<QWidget*>{wide, list, group})
            layout->addRow(row);
        layout->addRow(new QPushButton(QStringLiteral("Set")));
        window.resize(400, 300);
        window.show();
    }
};

std::string ErrorOf(const std::function<void(const CControls&)>& use) {
    return OnGui([&]() -> std::string {
        Form form;
        try {
            use(CControls(form.window));
        } catch (const std::exception& error) {
            return error.what();
        }
        return "none";
    });
}

TEST(Controls, AreFoundByTheirLabelsAndUsed) {
    OnGui([] {
        Form form;
        const CControls controls(form.window);
        controls.Type("Name", "new \u00E4");
        controls.Press("&Log && print");
        controls.Choose("Kind", "C");
        EXPECT_EQ(form.name->text(), QStringLiteral("new \u00E4"));
        EXPECT_TRUE(form.wide->isChecked());
        EXPECT_EQ(form.list->currentIndex(), 2);
        EXPECT_EQ(&controls.Get<QLineEdit>("&Name"), form.name);
        EXPECT_EQ(controls.In("Inner").Get<QPushButton>("Set").parentWidget(), form.group);
        controls.Type("Name", "");
        EXPECT_EQ(form.name->text(), QString());
    });
}

TEST(Controls, WhatAnOperatorCouldNotDoIsAnError) {
    EXPECT_THAT(ErrorOf([](const CControls& c) { c.Press("Gone"); }), HasSubstr("0 controls \"Gone\""));
    EXPECT_THAT(ErrorOf([](const CControls& c) { c.Press("Set"); }), HasSubstr("2 controls \"Set\""));
    EXPECT_THAT(ErrorOf([](const CControls& c) { c.Press("Log && print"); }), HasSubstr("0 controls"))
        << "a label with & is taken to the letter";
    EXPECT_THAT(ErrorOf([](const CControls& c) { c.Choose("Kind", "D"); }), HasSubstr("no item"));
    EXPECT_THAT(ErrorOf([](const CControls& c) {
                    c.Get<QCheckBox>("&Log && print").setEnabled(false);
                    c.Press("&Log && print");
                }),
                HasSubstr("is disabled"));
    EXPECT_THAT(ErrorOf([](const CControls& c) {
                    c.GetRoot().hide();
                    c.Press("&Log && print");
                }),
                HasSubstr("is not on the screen"));
    EXPECT_THAT(ErrorOf([](const CControls& c) {
                    QDialog modal(&c.GetRoot());
                    modal.setModal(true);
                    modal.show();
                    c.Press("&Log && print");
                }),
                HasSubstr("is behind"));
    EXPECT_THAT(ErrorOf([](const CControls&) { CControls(static_cast<QWidget*>(nullptr)); }),
                HasSubstr("no such window"));
}

TEST(Controls, EntriesOfMenusAreFoundByTheirPath) {
    OnGui([] {
        QMenu menu;
        int cold = 0;
        menu.addAction(QStringLiteral("&Add"));
        menu.addSeparator();
        QMenu* const reboot = menu.addMenu(QStringLiteral("&Reboot"));
        reboot->addAction(QStringLiteral("Cold"), &menu, [&cold] { ++cold; });
        reboot->addAction(QStringLiteral("Warm"))->setEnabled(false);
        EXPECT_THAT(EntriesOf(menu), ElementsAre("&Add", "-", "&Reboot"));
        ChooseEntry(menu, {"Reboot", "Cold"});
        EXPECT_EQ(cold, 1);
        EXPECT_THROW(ChooseEntry(menu, {"Reboot", "Warm"}), std::runtime_error);
        EXPECT_THROW(ChooseEntry(menu, {"Add", "Cold"}), std::runtime_error);
    });
}

TEST(DialogScript, AnswersInOrderAndNotesWhatItSaw) {
    CEventList events;
    CDialogScript script(events);
    script.Press("Error", "OK");
    script.Press("Confirmation", "Yes");
    CGuiOperator op;
    OnGui([&] {
        ShowError(op, "It failed.\r\nBadly.");
        EXPECT_TRUE(Confirm(op, "Go on?"));
    });
    EXPECT_THAT(events.Take(), ElementsAre("Box(Error, It failed.\nBadly., error, OK)",
                                           "Box(Confirmation, Go on?, question, Yes, No, Cancel)"));
}

TEST(DialogScript, WhatWasNotForetoldIsAFailureAndClosed) {
    static CEventList events;
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(
        {
            CDialogScript script(events);
            OnGui([] {
                CGuiOperator op;
                ShowError(op, "Surprise");
            });
        },
        "not foretold: Box(Error, Surprise, error, OK)");
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(
        {
            CDialogScript script(events);
            script.Do("Information", [](const CControls& box) { EXPECT_THAT(box.Texts(), ::testing::Not(IsEmpty())); });
            OnGui([] {
                CGuiOperator op;
                ShowInformation(op, "News");
            });
        },
        "left open: Box(Information, News");
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(
        {
            CDialogScript script(events);
            script.Press("Error", "OK");
        },
        "no dialog \"Error\" came");
}

TEST(OnGui, GivesResultsAndErrorsToTheTest) {
    EXPECT_EQ(OnGui([] { return 7; }), 7);
    EXPECT_EQ(OnGui([] { return OnGui([] { return std::string("inner"); }); }), "inner");
    EXPECT_THROW(OnGui([] { throw std::runtime_error("failed"); }), std::runtime_error);
}

TEST(Screenshot, ShowsTheWindowAsItIs) {
    const CTempFolder folder;
    qputenv("BDC_SCREENSHOTS", QByteArray::fromStdString(folder.File("new")));
    const std::string path = OnGui([] {
        Form form;
        return TakeScreenshot(form.window, "form");
    });
    qunsetenv("BDC_SCREENSHOTS");
    ASSERT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(QImage(QString::fromStdString(path)).size(), QSize(400, 300));
}

} // namespace
