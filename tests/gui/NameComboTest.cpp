// The list of names into which a number can be typed.
#include "module/widgets/NameCombo.h"
#include "tests/gui/harness/Controls.h"
#include "tests/gui/harness/GuiAccess.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class NameCombo : public ::testing::Test {
protected:
    // On the thread of the windows, with room for five characters.
    static void With(const std::function<void(CNameCombo&)>& use) {
        OnGui([&] {
            CNameCombo combo(nullptr, 5);
            combo.addItems({QStringLiteral("inactive"), QStringLiteral("active"), QStringLiteral("on"),
                            QStringLiteral("twice"), QStringLiteral("twice")});
            combo.show();
            use(combo);
        });
    }
    static std::string TextOf(const CNameCombo& combo) { return combo.GetText().toStdString(); }
};

TEST_F(NameCombo, ShowsNamesAndTextsOfTheProgramWhole) {
    With([](CNameCombo& combo) {
        combo.SetItem(1);
        EXPECT_EQ(TextOf(combo), "active");
        EXPECT_EQ(combo.GetItem(), 1);
        combo.SetText(QStringLiteral("4294967295"));
        EXPECT_EQ(TextOf(combo), "4294967295");
        EXPECT_EQ(combo.GetItem(), CNameCombo::NO_ITEM);
        combo.SetItem(CNameCombo::NO_ITEM);
        EXPECT_EQ(TextOf(combo), "");
    });
}

TEST_F(NameCombo, LimitsWhatIsTypedOrPasted) {
    With([](CNameCombo& combo) {
        TypeInto(combo, "1234567");
        EXPECT_EQ(TextOf(combo), "12345");
        QGuiApplication::clipboard()->setText(QStringLiteral("7654321"));
        combo.lineEdit()->selectAll();
        QTest::keyClick(&combo, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(TextOf(combo), "76543");
    });
}

TEST_F(NameCombo, AnItemIsNoLongerChosenOnceItsTextIsEdited) {
    With([](CNameCombo& combo) {
        ChooseItem(combo, "active");
        EXPECT_EQ(combo.GetItem(), 1);
        QTest::keyClick(&combo, Qt::Key_End);
        QTest::keyClick(&combo, Qt::Key_Backspace);
        EXPECT_EQ(TextOf(combo), "activ");
        EXPECT_EQ(combo.GetItem(), CNameCombo::NO_ITEM);
        TypeInto(combo, "7");
        EXPECT_EQ(combo.GetItem(), CNameCombo::NO_ITEM);
        combo.SetItem(1);
        EXPECT_EQ(TextOf(combo), "active") << "the same item again";
        EXPECT_EQ(combo.GetItem(), 1);
    });
}

TEST_F(NameCombo, TheSameItemCanBeChosenAgainFromTheList) {
    With([](CNameCombo& combo) {
        ChooseItem(combo, "active");
        TypeInto(combo, "7");
        combo.showPopup();
        QTest::keyClick(combo.view(), Qt::Key_Return);
        EXPECT_EQ(TextOf(combo), "active");
        EXPECT_EQ(combo.GetItem(), 1);
    });
}

TEST_F(NameCombo, ATypedNameIsItsItemIfThereIsOne) {
    With([](CNameCombo& combo) {
        TypeInto(combo, "ON");
        EXPECT_EQ(combo.GetItem(), 2);
        EXPECT_EQ(TextOf(combo), "ON");
        for (const char* const text : {"o", "onn", "twice", "", "*"}) {
            TypeInto(combo, text);
            EXPECT_EQ(combo.GetItem(), CNameCombo::NO_ITEM) << text;
        }
    });
}

TEST_F(NameCombo, CompletesAndAddsNothing) {
    With([](CNameCombo& combo) {
        const int count = combo.count();
        for (const char* const text : {"in", "twice", "77"}) {
            TypeInto(combo, text);
            EXPECT_EQ(TextOf(combo), text);
            QTest::keyClick(&combo, Qt::Key_Return);
            EXPECT_EQ(TextOf(combo), text);
            EXPECT_EQ(combo.GetItem(), CNameCombo::NO_ITEM) << text;
        }
        EXPECT_EQ(combo.count(), count);
    });
}

} // namespace
