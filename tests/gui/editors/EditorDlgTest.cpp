// What all editors have in common.
#include "tests/gui/editors/Editors.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>

namespace {

using ::testing::ElementsAre;

std::string Focus(const CControls& dialog) {
    const QWidget* const focus = dialog.GetRoot().focusWidget();
    const auto* const button = qobject_cast<const QPushButton*>(focus);
    return button ? button->text().remove(u'&').toStdString() : focus->metaObject()->className();
}

// What a paste over the whole field leaves of the text.
qsizetype Pasted(QWidget& field, QLineEdit& edit, const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    field.setFocus();
    PressKey(Qt::Key_A, Qt::ControlModifier);
    PressKey(Qt::Key_V, Qt::ControlModifier);
    return edit.text().size();
}

TEST_F(Editors, TheirFieldsComeBeforeTheirButtonsWithTab) {
    CPVDateTime value;
    std::vector<std::string> order;
    Use(Value(value), "Input date-time", [&](const CControls& dialog) {
        for (int i = 0; i < 10; ++i) {
            order.push_back(Focus(dialog));
            PressKey(Qt::Key_Tab);
        }
        EXPECT_EQ(dialog.GetRoot().focusWidget(), &dialog.Get<QWidget>("Day of &week")) << "around";
        PressCancel(dialog);
    });
    EXPECT_THAT(order, ElementsAre("QComboBox", "QComboBox", "QComboBox", "CLimitEdit", "QComboBox", "QComboBox",
                                   "QComboBox", "QComboBox", "OK", "Cancel"));
}

TEST_F(Editors, KeepTheirSizesByKind) {
    CPVString text;
    CPVDate date;
    constexpr QSize WIDE(700, 222);
    QSize other;
    Use(Value(date), "Input date-time", [&](const CControls& dialog) {
        other = dialog.GetRoot().size();
        PressOk(dialog);
    });
    for (const char* const button : {"OK", "Cancel"}) {
        Use(Value(text), "Input string", [&](const CControls& dialog) {
            dialog.GetRoot().resize(WIDE);
            dialog.Press(button);
        });
        Use(Value(text), "Input string", [&](const CControls& dialog) {
            EXPECT_EQ(dialog.GetRoot().size(), WIDE);
            dialog.GetRoot().resize(WIDE / 2);
            PressOk(dialog);
        });
    }
    Use(Value(date), "Input date-time", [&](const CControls& dialog) {
        EXPECT_EQ(dialog.GetRoot().size(), other);
        PressOk(dialog);
    });
}

TEST_F(Editors, CutAPasteToTheRoomThereIs) {
    const QString endless(100'000, u'1');
    const auto paste = [&](CPropertyValue& value, const char* title, const char* label, qsizetype room) {
        Use(Value(value), title, [&](const CControls& dialog) {
            auto& field = dialog.Get<QWidget>(label);
            auto* edit = qobject_cast<QLineEdit*>(&field);
            EXPECT_EQ(Pasted(field, edit ? *edit : dialog.In(label).Only<QLineEdit>(), endless), room) << title;
            PressCancel(dialog);
        });
    };
    CPVUnsigned number;
    paste(number, "Input unsigned", "Value", 11);
    CPVSigned whole;
    paste(whole, "Input signed", "Value", 11);
    CPVReal real;
    paste(real, "Input real", "Value", 30);
    CPVEnumerated name;
    paste(name, "Input enumerated", "Value", 5);
    CPVDate date;
    paste(date, "Input date-time", "&Year", 4);
    CPVString text;
    paste(text, "Input string", "Value", 100'000);
    CPVOctetString octets;
    paste(octets, "Input octet string", "Value", 100'000);
}

} // namespace
