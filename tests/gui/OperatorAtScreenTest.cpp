// What the console asks the operator at a screen: boxes, also those of workers, pickers, and files to open.
#include "tests/gui/ConsoleFixture.h"
#include "tests/support/TempFolder.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>

#include <filesystem>
#include <future>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OperatorAtScreen : public ConsoleFixture {
protected:
    OperatorAtScreen() { Start(); }
    // What the operator answers to a box of a worker.
    BoxAnswer AskFromWorker(IOperator& op) {
        return std::async(
                   std::launch::async,
                   [&op] {
                       return op.ShowBox({"Confirmation", "Write\r\nit?", BoxIcon::Question, BoxButtons::YesNoCancel});
                   })
            .get();
    }
    CScreenOperator m_operator;
    CDialogScript m_script{m_events};
};

TEST_F(OperatorAtScreen, AWorkerWaitsForItsAnswer) {
    for (const auto& [button, answer] :
         {std::pair("Yes", BoxAnswer::Yes), {"No", BoxAnswer::No}, {"Cancel", BoxAnswer::Cancel}}) {
        m_script.Do("Confirmation", [pressed = button](const CControls& box) {
            EXPECT_EQ(box.GetRoot().parentWidget(), nullptr) << "the console is hidden: the box stands alone";
            box.Press(pressed);
        });
        EXPECT_EQ(AskFromWorker(m_operator), answer);
        EXPECT_THAT(Finished(), ElementsAre("Box(Confirmation, Write\nit?, question, Yes, No, Cancel)"));
    }
}

TEST_F(OperatorAtScreen, ABoxStandsOverTheDialogThatIsOpen) {
    m_script.Do("outer", [this](const CControls& outer) {
        m_script.Do("Error", [&outer](const CControls& box) {
            EXPECT_EQ(box.GetRoot().parentWidget(), &outer.GetRoot());
            PressKey(Qt::Key_Escape);
        });
        ShowError(m_operator, "wrong");
        static_cast<QDialog&>(outer.GetRoot()).accept();
    });
    OnGui([] {
        QDialog dialog(ConsoleWindow());
        dialog.setWindowTitle(QStringLiteral("outer"));
        EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    });
    EXPECT_THAT(Settled(), ElementsAre("Dialog(outer)", "Box(Error, wrong, error, OK)"));
}

TEST_F(OperatorAtScreen, ForWantOfAScreenAWorkersBoxIsALineOfTheLog) {
    CGuiOperator unseen;
    EXPECT_EQ(AskFromWorker(unseen), BoxAnswer::Cancel);
    EXPECT_THAT(Settled(), ElementsAre("I: Write - it?"));
}

TEST_F(OperatorAtScreen, OnceTheConsoleHasEndedNobodyIsAsked) {
    ASSERT_TRUE(Stop());
    m_events.Take();
    EXPECT_EQ(AskFromWorker(m_operator), BoxAnswer::Cancel);
    EXPECT_THAT(m_events.Take(), ElementsAre("I: Write - it?"));
}

TEST_F(OperatorAtScreen, AFileToSaveGetsItsExtensionAndIsNotOverwrittenUnasked) {
    const CTempFolder folder;
    folder.Put("old.bnb", "x");
    const auto pick = [&] { return OnGui([&] { return m_operator.PickFile({folder.File("old"), "bnb", true}); }); };
    m_script.Do("Save As", [](const CControls& dialog) {
        EXPECT_EQ(dialog.Get<QLineEdit>("File name:").text(), QStringLiteral("old"));
        EXPECT_EQ(static_cast<QFileDialog&>(dialog.GetRoot()).nameFilters(),
                  QStringList(QStringLiteral("bnb files (*.bnb)")));
        dialog.Press("Save");
        dialog.Press("Cancel");
    });
    m_script.Press("Save As", "No");
    EXPECT_EQ(pick(), std::nullopt);
    m_script.Do("Save As", [](const CControls& dialog) { dialog.Press("Save"); });
    m_script.Press("Save As", "Yes");
    EXPECT_EQ(pick(), folder.File("old.bnb"));
    m_script.Press("Save As", "Cancel");
    EXPECT_EQ(pick(), std::nullopt);
}

TEST_F(OperatorAtScreen, OnlyAFileThatExistsIsOpened) {
    const CTempFolder folder;
    folder.Put("have.dat", "x");
    m_script.Do("Open", [](const CControls& dialog) {
        EXPECT_EQ(static_cast<QFileDialog&>(dialog.GetRoot()).fileMode(), QFileDialog::ExistingFile);
        dialog.Press("Open");
    });
    EXPECT_EQ(OnGui([&] {
                  return m_operator.PickFile({folder.File("have.dat"), "dat", false});
              }),
              folder.File("have.dat"));
}

TEST_F(OperatorAtScreen, AFolderIsPickedUnderItsTitle) {
    const CTempFolder folder;
    std::filesystem::create_directory(folder.File("inner"));
    m_script.Do("Select folder", [](const CControls& dialog) {
        EXPECT_TRUE(static_cast<QFileDialog&>(dialog.GetRoot()).testOption(QFileDialog::ShowDirsOnly));
        dialog.Type("Directory:", "inner");
        dialog.Press("Choose");
    });
    EXPECT_EQ(OnGui([&] { return m_operator.PickFolder("Select folder", folder.Path()); }), folder.File("inner"));
    m_script.Press("Select folder", "Cancel");
    EXPECT_EQ(OnGui([&] { return m_operator.PickFolder("Select folder", folder.Path()); }), std::nullopt);
}

// Programs of the desktop, found by the path, that write down how they were started.
TEST_F(OperatorAtScreen, FilesAreOpenedByTheDesktopsProgramInTheirFolder) {
    const CTempFolder folder;
    for (const char* const program : {"xdg-open", "java"}) {
        folder.Put(program, std::string("#!/bin/sh\necho ") + program + " \"$@\" in \"$PWD\" >\"" + folder.Path() +
                                "/started.new\"\nmv \"" + folder.Path() + "/started.new\" \"" + folder.Path() +
                                "/started\"\n");
        std::filesystem::permissions(folder.File(program), std::filesystem::perms::owner_all);
    }
    const QByteArray before = qgetenv("PATH");
    qputenv("PATH", QByteArray::fromStdString(folder.Path()) + ':' + before);
    const auto opened = [&](const std::string& file) {
        std::filesystem::remove(folder.File("started"));
        m_operator.OpenFile(file, folder.Path());
        EXPECT_TRUE(Eventually([&] { return folder.Has("started"); }));
        return folder.Get("started");
    };
    EXPECT_EQ(opened("/a b/report.xml"), "xdg-open /a b/report.xml in " + folder.Path() + "\n");
    EXPECT_EQ(opened("/x/Tool.JAR"), "java -jar /x/Tool.JAR in " + folder.Path() + "\n");
    qputenv("PATH", before);
}

} // namespace
