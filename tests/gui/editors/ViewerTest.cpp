// The viewer of values.
#include "module/console/Busy.h"
#include "module/editors/EditProp.h"
#include "tests/gui/editors/Editors.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

using ::testing::ElementsAre;

class Viewer : public Editors {
protected:
    void View(const std::string& text, const CDialogScript::Action& use) {
        Use(
            [&] {
                CEditProp dialog(nullptr, "heating & cooling", text);
                return RunModal(dialog) == QDialog::Accepted;
            },
            "View property value", use);
    }
    static QPlainTextEdit& TextOf(const CControls& dialog) { return dialog.Only<QPlainTextEdit>(); }
    static std::string Selected(const CControls& dialog) {
        return TextOf(dialog).textCursor().selectedText().toStdString();
    }
    static int Position(const CControls& dialog) { return TextOf(dialog).textCursor().selectionStart(); }
    static std::string Clipboard() { return QGuiApplication::clipboard()->text().toStdString(); }
};

TEST_F(Viewer, ShowsTheValueInLinesToBeReadOnly) {
    View("{a, {b}}", [](const CControls& dialog) {
        EXPECT_THAT(dialog.Texts(), ElementsAre("heating && cooling"));
        EXPECT_EQ(TextOf(dialog).toPlainText(), QStringLiteral("{\n\ta,\n\t{\n\t\tb\n\t}\n}"));
        EXPECT_EQ(dialog.GetRoot().focusWidget(), &dialog.Get<QPlainTextEdit>("heating && cooling"));
        const int character = TextOf(dialog).fontMetrics().averageCharWidth(); // of 4 units of dialogs
        EXPECT_EQ(TextOf(dialog).tabStopDistance(), 12 / 4 * character);
        TypeText(TextOf(dialog), "x");
        PressKey(Qt::Key_Delete);
        EXPECT_EQ(TextOf(dialog).toPlainText().size(), 17);
        PressKey(Qt::Key_Return);
        EXPECT_FALSE(dialog.GetRoot().isVisible());
    });
}

TEST_F(Viewer, CopiesTheSelectionAlone) {
    View("{word}", [](const CControls& dialog) {
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        dialog.Press("&Copy");
        EXPECT_EQ(Clipboard(), "before") << "nothing is selected";
        EXPECT_TRUE(TextOf(dialog).find(QStringLiteral("or")));
        dialog.Press("&Copy");
        EXPECT_EQ(Clipboard(), "or");
        PressKey(Qt::Key_Escape);
    });
}

TEST_F(Viewer, FindsTextAsItIsTyped) {
    View("{zone, ZONES, z}", [](const CControls& dialog) {
        auto& find = dialog.Get<QLineEdit>("&Find");
        EXPECT_FALSE(find.isVisible());
        PressKey(Qt::Key_F, Qt::ControlModifier);
        ASSERT_EQ(dialog.GetRoot().focusWidget(), &find);
        TypeInto(find, "zones");
        EXPECT_EQ(Selected(dialog), "ZONES");
        TypeInto(find, "zonesx");
        EXPECT_THAT(dialog.Texts(), ElementsAre("heating && cooling", "&Find", "Not found"));
        EXPECT_EQ(Selected(dialog), "") << "the place stays";
        TypeInto(find, "");
        EXPECT_THAT(dialog.Texts(), ElementsAre("heating && cooling", "&Find"));
        PressKey(Qt::Key_Escape);
        EXPECT_FALSE(find.isVisible());
        EXPECT_TRUE(dialog.GetRoot().isVisible()) << "the first Escape leaves the search alone";
        PressKey(Qt::Key_Escape);
    });
}

TEST_F(Viewer, GoesOnToTheNextPlaceAndAround) {
    View("{ab, ab, ab}", [](const CControls& dialog) {
        PressKey(Qt::Key_F, Qt::ControlModifier);
        TypeInto(dialog.Get<QLineEdit>("&Find"), "ab");
        const int first = Position(dialog);
        PressKey(Qt::Key_Return);
        const int second = Position(dialog);
        EXPECT_GT(second, first);
        PressKey(Qt::Key_Return, Qt::ShiftModifier);
        EXPECT_EQ(Position(dialog), first);
        PressKey(Qt::Key_F3, Qt::ShiftModifier);
        EXPECT_GT(Position(dialog), second) << "around the beginning";
        dialog.Press("&Previous");
        EXPECT_EQ(Position(dialog), second);
        dialog.Press("&Next");
        PressKey(Qt::Key_F3);
        EXPECT_EQ(Position(dialog), first) << "around the end";
        dialog.Press("OK");
    });
}

} // namespace
