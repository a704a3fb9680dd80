// The small prompts that many pages use, and the edit that takes only some characters.
#include "module/console/Busy.h"
#include "module/console/PasswordInput.h"
#include "module/widgets/EditX.h"
#include "module/widgets/InputDlg.h"
#include "module/widgets/SpinEdit.h"
#include "tests/gui/ConsoleFixture.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>

namespace {

using ::testing::ElementsAre;

class Prompts : public ConsoleFixture {
protected:
    CDialogScript m_script{m_events};
};

class NumberPrompt : public Prompts {
protected:
    // What the prompt gives when the operator does this to it; 77 was there before.
    std::uint32_t Ask(const CDialogScript::Action& use) {
        std::uint32_t period = 77;
        m_script.Do("Input", use);
        m_isAccepted = OnGui([&] {
            CInputDlg dialog(nullptr, {QStringLiteral("Refresh period"), QStringLiteral("s"), 5, 3600}, &period);
            return RunModal(dialog) == QDialog::Accepted;
        });
        return period;
    }
    bool m_isAccepted = false;
};

TEST_F(NumberPrompt, ShowsItsTextsAndTheNumber) {
    EXPECT_EQ(Ask([](const CControls& dialog) {
                  EXPECT_THAT(dialog.Texts(), ElementsAre("Refresh period", "s"));
                  EXPECT_EQ(dialog.Get<CSpinEdit>("Refresh period").GetText(), QStringLiteral("77"));
                  dialog.Press("Cancel");
              }),
              77U);
    EXPECT_FALSE(m_isAccepted);
}

TEST_F(NumberPrompt, StoresWhatLiesWithinTheLimits) {
    for (const auto& [text, number] : {std::pair("5", 5U), {"3600", 3600U}, {"300", 300U}}) {
        EXPECT_EQ(Ask([&, typed = text](const CControls& dialog) {
                      dialog.Type("Refresh period", typed);
                      dialog.Press("OK");
                  }),
                  number);
        EXPECT_TRUE(m_isAccepted);
    }
}

TEST_F(NumberPrompt, StaysOpenWithoutAMessageForAnythingElse) {
    EXPECT_EQ(Ask([](const CControls& dialog) {
                  for (const char* const text : {"4", "3601", "", "abc", "-5", "4294967295", "9999999999"}) {
                      dialog.Type("Refresh period", text);
                      PressKey(Qt::Key_Return);
                      EXPECT_TRUE(dialog.GetRoot().isVisible()) << text;
                  }
                  PressKey(Qt::Key_Escape);
              }),
              77U);
    EXPECT_FALSE(m_isAccepted);
}

TEST_F(NumberPrompt, TheArrowsStayWithinTheLimits) {
    Ask([](const CControls& dialog) {
        auto& edit = dialog.Get<CSpinEdit>("Refresh period");
        const auto step = [&](const char* text, Qt::Key key) {
            TypeInto(edit, text);
            PressKey(key);
            return edit.GetText().toStdString();
        };
        EXPECT_EQ(step("3600", Qt::Key_Up), "3600");
        EXPECT_EQ(step("5", Qt::Key_Down), "5");
        EXPECT_EQ(step("9999", Qt::Key_Down), "3600");
        EXPECT_EQ(step("6", Qt::Key_Down), "5");
        dialog.Press("Cancel");
    });
}

class PasswordPrompt : public Prompts {
protected:
    std::string Ask(const std::string& initial, const CDialogScript::Action& use) {
        m_script.Do("Password", use);
        return OnGui([&] {
            CPasswordInput dialog(nullptr, initial);
            RunModal(dialog);
            return dialog.GetPassword();
        });
    }
};

TEST_F(PasswordPrompt, HidesWhatIsTyped) {
    EXPECT_EQ(Ask("",
                  [](const CControls& dialog) {
                      auto& edit = dialog.Only<QLineEdit>();
                      EXPECT_EQ(edit.text(), QString());
                      dialog.Type("Password", "p\u00E4ss");
                      EXPECT_EQ(edit.displayText().size(), 4);
                      EXPECT_FALSE(edit.displayText().contains(QLatin1Char('s')));
                      dialog.Press("OK");
                  }),
              "p\u00E4ss");
}

TEST_F(PasswordPrompt, MayBeEmptyAndMayBeginWithTheOneInUse) {
    const auto accept = [](const CControls& dialog) { dialog.Press("OK"); };
    EXPECT_EQ(Ask("", accept), "");
    EXPECT_EQ(Ask("old", accept), "old");
    EXPECT_EQ(Ask("old",
                  [](const CControls& dialog) {
                      dialog.Type("Password", ""); // all of it is selected, too
                      dialog.Press("OK");
                  }),
              "");
}

class FilteredEdit : public ConsoleFixture {
protected:
    // On the thread of the windows, with an edit for the names of jobs.
    static void With(const std::function<void(CEditX&)>& use) {
        OnGui([&] {
            CEditX edit(nullptr, ACCEPT_DIGITS | ACCEPT_LETTERS, "_");
            edit.show();
            use(edit);
        });
    }
    static std::string Typed(CEditX& edit, const std::string& text) {
        TypeInto(edit, text);
        return edit.text().toStdString();
    }
    static std::string Pasted(CEditX& edit, const std::string& text) {
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
        QTest::keyClick(&edit, Qt::Key_V, Qt::ControlModifier);
        return edit.text().toStdString();
    }
};

TEST_F(FilteredEdit, TakesTypedCharactersOneByOne) {
    With([](CEditX& edit) {
        EXPECT_EQ(Typed(edit, "aZ09_"), "aZ09_");
        EXPECT_EQ(Typed(edit, "a b-c.d/e\\f"), "abcdef");
        EXPECT_EQ(Typed(edit, "x\u00E9y"), "xy");
        EXPECT_EQ(Typed(edit, "x\u03A9y"), "x\u03A9y") << "beyond the first 255 all pass";
    });
    OnGui([] {
        CEditX digits(nullptr, ACCEPT_DIGITS, nullptr);
        digits.show();
        EXPECT_EQ(Typed(digits, "1a2_3"), "123");
        CEditX letters(nullptr, ACCEPT_LETTERS, "");
        letters.show();
        EXPECT_EQ(Typed(letters, "1a2_3B"), "aB");
        CEditX nothing(nullptr, 0, "-");
        nothing.show();
        EXPECT_EQ(Typed(nothing, "1a-"), "-");
    });
}

TEST_F(FilteredEdit, KeysThatAreNoTextWorkAsEver) {
    With([](CEditX& edit) {
        Typed(edit, "abc");
        QTest::keyClick(&edit, Qt::Key_Backspace);
        EXPECT_EQ(edit.text(), QStringLiteral("ab"));
        QTest::keyClick(&edit, Qt::Key_Home);
        QTest::keyClick(&edit, Qt::Key_Delete);
        EXPECT_EQ(edit.text(), QStringLiteral("b"));
        QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(edit.text(), QStringLiteral("ab"));
    });
}

TEST_F(FilteredEdit, APasteGoesInWholeOrNotAtAll) {
    With([](CEditX& edit) {
        EXPECT_EQ(Pasted(edit, "job_1"), "job_1");
        edit.setCursorPosition(3);
        for (const char* const text : {"a b", "-", "a\nb", "\u00E9", "\u03A9", "ok\u03A9"})
            EXPECT_EQ(Pasted(edit, text), "job_1") << text;
        EXPECT_EQ(edit.cursorPosition(), 3);
        EXPECT_EQ(Pasted(edit, "X"), "jobX_1");
        edit.selectAll();
        EXPECT_EQ(Pasted(edit, "not this"), "jobX_1") << "the selection stays";
        EXPECT_EQ(edit.selectedText(), QStringLiteral("jobX_1"));
    });
}

TEST_F(FilteredEdit, TextOfTheProgramIsNotLookedAt) {
    With([](CEditX& edit) {
        edit.SetWholeText(QStringLiteral("my job \u00E9"));
        EXPECT_EQ(edit.text(), QStringLiteral("my job \u00E9"));
        QTest::keyClick(&edit, Qt::Key_End);
        QTest::keyClick(&edit, Qt::Key_1);
        EXPECT_EQ(edit.text(), QStringLiteral("my job \u00E91")) << "the field can still be edited";
    });
}

TEST_F(FilteredEdit, OtherWaysInFollowTheRuleOfAPaste) {
    With([](CEditX& edit) {
        edit.SetWholeText(QStringLiteral("a\u00E9c"));
        const auto commit = [&](const char* text) {
            QInputMethodEvent event;
            event.setCommitString(QString::fromUtf8(text));
            QCoreApplication::sendEvent(&edit, &event);
            return edit.text().toStdString();
        };
        edit.setCursorPosition(3);
        EXPECT_EQ(commit("\u00FC"), "a\u00E9c");
        EXPECT_EQ(commit("d"), "a\u00E9cd");

        const auto drop = [&](const char* text) {
            QMimeData data;
            data.setText(QString::fromUtf8(text));
            QDragEnterEvent enter(QPoint(1, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&edit, &enter);
            EXPECT_TRUE(enter.isAccepted());
            QDropEvent event(QPointF(1, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&edit, &event);
            return edit.text().toStdString();
        };
        EXPECT_EQ(drop("x y"), "a\u00E9cd");
        EXPECT_EQ(drop("xy"), "xya\u00E9cd");

        edit.setCursorPosition(4);
        QTest::keyClick(&edit, Qt::Key_Backspace); // takes the foreign letter out
        EXPECT_EQ(edit.text(), QStringLiteral("xyacd"));
        QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(edit.text(), QStringLiteral("xyacd")) << "it does not come back";

        QGuiApplication::clipboard()->setText(QStringLiteral("no way"));
        edit.paste();
        QMetaObject::invokeMethod(&edit, "paste"); // as the context menu
        EXPECT_EQ(edit.text(), QStringLiteral("xyacd"));
    });
}

} // namespace
