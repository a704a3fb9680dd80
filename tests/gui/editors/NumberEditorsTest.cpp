// The editors of numbers and of false and true.
#include "module/editors/EditRealDlg.h"
#include "module/editors/EditSignedDlg.h"
#include "module/editors/EditUnsignedDlg.h"
#include "module/editors/MemberEditors.h"
#include "module/widgets/SpinEdit.h"
#include "tests/gui/editors/Editors.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <bit>
#include <cmath>
#include <limits>

namespace {

using ::testing::ElementsAre;

constexpr const char* UNSIGNED = "Input unsigned";
constexpr const char* SIGNED = "Input signed";
constexpr const char* REAL = "Input real";

std::string TextOf(const CControls& dialog, const std::string& label) {
    return dialog.In(label).Only<QLineEdit>().text().toStdString();
}

// What the arrow keys make of a text.
std::string Stepped(const CControls& dialog, const std::string& text, Qt::Key key) {
    dialog.Type("Value", text);
    PressKey(key);
    return TextOf(dialog, "Value");
}

class UnsignedEditor : public Editors {
protected:
    CPVUnsigned m_number;
    const Open m_open = Value(m_number);
};

TEST_F(UnsignedEditor, TakesAllNumbersOf32Bits) {
    for (const auto& [text, number] : {std::pair("0", 0U), {"21", 21U}, {"4294967295", 4294967295U}, {"+7", 7U}}) {
        Accept(m_open, UNSIGNED, "Value", text);
        EXPECT_EQ(m_number.Value, number);
    }
}

TEST_F(UnsignedEditor, RefusesWhatIsNone) {
    m_number.Value = 77;
    for (const char* const text : {"", "4294967296", "12a", "-1", "1.5"})
        Refuse(m_open, UNSIGNED, "Value", text, "Invalid unsigned value");
    EXPECT_EQ(m_number.Value, 77U);
}

TEST_F(UnsignedEditor, HasTheNumberSelectedSoThatTypingReplacesIt) {
    m_number.Value = 4711;
    EXPECT_TRUE(Use(m_open, UNSIGNED, [](const CControls& dialog) {
        EXPECT_EQ(TextOf(dialog, "Value"), "4711");
        QWidget* const focus = dialog.GetRoot().focusWidget();
        ASSERT_EQ(focus, &dialog.Get<CSpinEdit>("Value"));
        TypeText(*focus, "5");
        PressKey(Qt::Key_Return);
    }));
    EXPECT_EQ(m_number.Value, 5U);
    EXPECT_FALSE(Use(m_open, UNSIGNED, [](const CControls& dialog) {
        dialog.Type("Value", "6");
        PressKey(Qt::Key_Escape);
    }));
    EXPECT_EQ(m_number.Value, 5U);
}

TEST_F(UnsignedEditor, ItsArrowsEndWhereSignedNumbersEnd) {
    Use(m_open, UNSIGNED, [](const CControls& dialog) {
        EXPECT_EQ(Stepped(dialog, "2147483647", Qt::Key_Up), "2147483647");
        EXPECT_EQ(Stepped(dialog, "4294967295", Qt::Key_Up), "2147483647");
        EXPECT_EQ(Stepped(dialog, "0", Qt::Key_Down), "0");
        EXPECT_EQ(Stepped(dialog, "9", Qt::Key_Up), "10");
        EXPECT_EQ(Stepped(dialog, "no number", Qt::Key_Up), "1");
        PressCancel(dialog);
    });
}

TEST_F(UnsignedEditor, HoldsElevenCharacters) {
    Use(m_open, UNSIGNED, [](const CControls& dialog) {
        dialog.Type("Value", "123456789012345");
        EXPECT_EQ(TextOf(dialog, "Value"), "12345678901");
        PressCancel(dialog);
    });
}

TEST_F(UnsignedEditor, ObeysTheLimitsOfItsCaller) {
    CEditUnsignedDlg* dialog = nullptr;
    OnGui([&] {
        dialog = new CEditUnsignedDlg(nullptr);
        dialog->Low = 1;
        dialog->High = 16;
        dialog->Value = 8;
        dialog->SetLabel("priority");
    });
    const Open open = [dialog] { return dialog->Run(); };
    Refuse(open, UNSIGNED, "priority", "0", "Invalid unsigned value");
    Refuse(open, UNSIGNED, "priority", "17", "Invalid unsigned value");
    EXPECT_TRUE(Use(open, UNSIGNED, [](const CControls& controls) {
        controls.Type("priority", "16");
        PressKey(Qt::Key_Up);
        EXPECT_EQ(TextOf(controls, "priority"), "16");
        PressOk(controls);
    }));
    EXPECT_EQ(dialog->Value, 16U);
    OnGui([&] { delete dialog; });
}

TEST_F(UnsignedEditor, ShowsAHintWhereThereIsOne) {
    const auto texts = [this](const MemberEditor<std::uint32_t>& editor) {
        std::uint32_t number = 3;
        std::vector<std::string> shown;
        EXPECT_FALSE(Use([&] { return editor.edit(nullptr, "delay & more", number); }, UNSIGNED,
                         [&](const CControls& dialog) {
                             shown = dialog.Texts();
                             PressCancel(dialog);
                         }));
        return shown;
    };
    EXPECT_THAT(texts(UNSIGNED_EDITOR), ElementsAre("delay && more"));
    EXPECT_THAT(texts(SECONDS_EDITOR), ElementsAre("delay && more", "s"));
    EXPECT_THAT(texts(PERCENT_EDITOR), ElementsAre("delay && more", "%"));
}

class SignedEditor : public Editors {
protected:
    CPVSigned m_number;
    const Open m_open = Value(m_number);
};

TEST_F(SignedEditor, TakesAllNumbersOf32Bits) {
    for (const auto& [text, number] :
         {std::pair("-2147483648", std::numeric_limits<std::int32_t>::min()), {"2147483647", 2147483647}, {"-5", -5}}) {
        Accept(m_open, SIGNED, "Value", text);
        EXPECT_EQ(m_number.Value, number);
    }
}

TEST_F(SignedEditor, RefusesWhatIsNone) {
    for (const char* const text : {"", "2147483648", "-2147483649", "5-", "--5"})
        Refuse(m_open, SIGNED, "Value", text, "Invalid signed value");
    EXPECT_EQ(m_number.Value, 0);
}

TEST_F(SignedEditor, ItsArrowsPassZero) {
    Use(m_open, SIGNED, [](const CControls& dialog) {
        EXPECT_EQ(Stepped(dialog, "0", Qt::Key_Down), "-1");
        EXPECT_EQ(Stepped(dialog, "-1", Qt::Key_Up), "0");
        EXPECT_EQ(Stepped(dialog, "-2147483648", Qt::Key_Down), "-2147483648");
        EXPECT_EQ(Stepped(dialog, "-9999999999", Qt::Key_Up), "-2147483648");
        EXPECT_EQ(Stepped(dialog, "2147483647", Qt::Key_Up), "2147483647");
        PressCancel(dialog);
    });
}

class RealEditor : public Editors {
protected:
    std::string Shown(CPropertyValue& value) {
        std::string text;
        Use(Value(value), REAL, [&](const CControls& dialog) {
            text = dialog.Get<QLineEdit>("Value").text().toStdString();
            PressCancel(dialog);
        });
        return text;
    }
    CPVReal m_single;
    CPVDouble m_double;
};

TEST_F(RealEditor, ShowsSevenOrFifteenDigits) {
    m_single.Value = 0.1F;
    m_double.Value = 1.0 / 3;
    EXPECT_EQ(Shown(m_single), "0.1");
    EXPECT_EQ(Shown(m_double), "0.333333333333333");
    m_single.Value = 5;
    EXPECT_EQ(Shown(m_single), "5.0");
    m_single.Value = 1e10F;
    EXPECT_EQ(Shown(m_single), "1.e+10");
}

TEST_F(RealEditor, TakesNumbers) {
    Accept(Value(m_single), REAL, "Value", " 21.5 ");
    EXPECT_EQ(m_single.Value, 21.5F);
    Accept(Value(m_double), REAL, "Value", "-1e39");
    EXPECT_EQ(m_double.Value, -1e39);
}

TEST_F(RealEditor, RefusesWhatIsNone) {
    for (const char* const text : {"", "1,5", "1e39", "nan", "inf", "0x10", "12x"})
        Refuse(Value(m_single), REAL, "Value", text, "Invalid real value");
    for (const char* const text : {"", "1e999", "-inf"})
        Refuse(Value(m_double), REAL, "Value", text, "Invalid real value");
}

TEST_F(RealEditor, ItsTextIsTheValueAlsoUntouched) {
    m_single.Value = 16777216.0F + 1;
    m_double.Value = 1.0 / 3;
    EXPECT_TRUE(Use(Value(m_single), REAL, PressOk));
    EXPECT_TRUE(Use(Value(m_double), REAL, PressOk));
    EXPECT_EQ(m_single.Value, 16777220.0F);
    EXPECT_EQ(m_double.Value, 0.333333333333333);
}

TEST_F(RealEditor, KeepsToTheBitWhatIsNoNumber) {
    constexpr std::uint32_t SIGNALLING = 0xFFA00001;
    m_single.Value = std::bit_cast<float>(SIGNALLING);
    EXPECT_EQ(Shown(m_single), "nan");
    EXPECT_TRUE(Use(Value(m_single), REAL, PressOk));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(m_single.Value), SIGNALLING);
    m_double.Value = -std::numeric_limits<double>::infinity();
    EXPECT_EQ(Shown(m_double), "-inf");
    EXPECT_TRUE(Use(Value(m_double), REAL, PressOk));
    EXPECT_TRUE(std::isinf(m_double.Value));
}

TEST_F(RealEditor, HoldsThirtyCharacters) {
    Use(Value(m_double), REAL, [](const CControls& dialog) {
        dialog.Type("Value", std::string(40, '1'));
        EXPECT_EQ(dialog.Get<QLineEdit>("Value").text().size(), 30);
        PressCancel(dialog);
    });
}

TEST_F(RealEditor, MayStayEmptyForCallersThatSaySo) {
    struct Result {
        bool isTaken;
        bool isNull;
        double value;
    };
    const auto ask = [this](bool isNull, const CDialogScript::Action& use) {
        Result result{};
        Use(
            [&] {
                CEditRealDlg dialog(nullptr);
                dialog.MayBeNull = true;
                dialog.IsNull = isNull;
                dialog.Value = 2.5;
                result.isTaken = dialog.Run();
                result.isNull = dialog.IsNull;
                result.value = dialog.Value;
                return result.isTaken;
            },
            REAL, use);
        return result;
    };
    const auto type = [](const char* text) {
        return [text](const CControls& dialog) {
            dialog.Type("Value", text);
            PressOk(dialog);
        };
    };
    EXPECT_TRUE(ask(false, type("")).isNull);
    EXPECT_TRUE(ask(true, PressOk).isNull) << "opens empty";
    const Result number = ask(true, type("3"));
    EXPECT_TRUE(number.isTaken);
    EXPECT_FALSE(number.isNull);
    EXPECT_EQ(number.value, 3);
}

class BooleanEditor : public Editors {
protected:
    CPVBoolean m_value;
    const Open m_open = Value(m_value);
};

TEST_F(BooleanEditor, IsAChoiceOfTwo) {
    EXPECT_TRUE(Use(m_open, "Input boolean", [](const CControls& dialog) {
        EXPECT_THAT(ItemsOf(dialog.Get<QComboBox>("Value")), ElementsAre("false", "true"));
        EXPECT_EQ(dialog.Get<QComboBox>("Value").currentText(), QStringLiteral("false"));
        dialog.Choose("Value", "true");
        PressOk(dialog);
    }));
    EXPECT_EQ(m_value.Value, 1);
    EXPECT_TRUE(Use(m_open, "Input boolean", [](const CControls& dialog) {
        dialog.Choose("Value", "false");
        PressOk(dialog);
    }));
    EXPECT_EQ(m_value.Value, 0);
}

TEST_F(BooleanEditor, LeavesAnOddTrue) {
    m_value.Value = 0xC3;
    EXPECT_TRUE(Use(m_open, "Input boolean", PressOk));
    EXPECT_EQ(m_value.Value, 0xC3);
}

} // namespace
