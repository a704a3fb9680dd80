// The editors of names, bits, texts and octets.
#include "module/editors/EditPriorityDlg.h"
#include "module/widgets/NameCombo.h"
#include "tests/gui/editors/Editors.h"

#include "api/bacnet/BacGeneral.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

#include <cstring>
#include <limits>

namespace {

using ::testing::ElementsAre;

constexpr const char* ENUMERATED = "Input enumerated";
constexpr const char* BITS = "Input bit-string";
constexpr const char* OCTETS = "Input octet string";
constexpr const char* STRING = "Input string";
constexpr const char* COV = "Input client-cov";
constexpr const char* LABEL = "present-value";

std::string TextIn(const CControls& dialog, const std::string& label) {
    return dialog.Get<QLineEdit>(label).text().toStdString();
}

CDialogScript::Action Type(const std::string& label, const std::string& text) {
    return [=](const CControls& dialog) {
        dialog.Type(label, text);
        PressOk(dialog);
    };
}

class EnumEditor : public Editors {
protected:
    EnumEditor() { m_value.SetPropId(OBJ_BINARY_VALUE, PROP_PRESENT_VALUE); }
    CPVEnumerated m_value;
    const Open m_open = Value(m_value);
};

TEST_F(EnumEditor, OffersTheNamesOfTheProperty) {
    EXPECT_TRUE(Use(m_open, ENUMERATED, [](const CControls& dialog) {
        auto& names = dialog.Get<CNameCombo>(LABEL);
        EXPECT_THAT(ItemsOf(names), ElementsAre("inactive", "active"));
        EXPECT_EQ(names.GetText(), QStringLiteral("inactive")) << "longer than what can be typed";
        dialog.Choose(LABEL, "active");
        PressOk(dialog);
    }));
    EXPECT_EQ(m_value.Value, 1U);
    Use(m_open, ENUMERATED, [](const CControls& dialog) {
        EXPECT_EQ(dialog.Get<CNameCombo>(LABEL).GetItem(), 1);
        PressCancel(dialog);
    });
}

TEST_F(EnumEditor, TakesNumbersWithoutAName) {
    for (const auto& [text, number] : {std::pair("32768", 32768U), {"7", 7U}, {"1", 1U}, {" +5", 5U}}) {
        Accept(m_open, ENUMERATED, LABEL, text);
        EXPECT_EQ(m_value.Value, number);
    }
}

TEST_F(EnumEditor, RefusesWhatIsNeitherNameNorSmallNumber) {
    for (const char* const text : {"", "32769", "99999", "activ", "-1", "1.0", "0x1"})
        Refuse(m_open, ENUMERATED, LABEL, text, "Invalid value");
    EXPECT_EQ(m_value.Value, 0U);
}

TEST_F(EnumEditor, LeavesALargeNumberThatNobodyTouched) {
    for (const std::uint32_t number : {32769U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        m_value.Value = number;
        EXPECT_TRUE(Use(m_open, ENUMERATED, PressOk));
        EXPECT_EQ(m_value.Value, number);
    }
}

TEST_F(EnumEditor, ShowsTheNumberOfAValueWithoutName) {
    const auto shown = [this](std::uint32_t number) {
        m_value.Value = number;
        std::string text;
        Use(m_open, ENUMERATED, [&](const CControls& dialog) {
            EXPECT_EQ(dialog.Get<CNameCombo>(LABEL).GetItem(), CNameCombo::NO_ITEM);
            text = dialog.Get<CNameCombo>(LABEL).GetText().toStdString();
            PressCancel(dialog);
        });
        return text;
    };
    EXPECT_EQ(shown(2), "2");
    EXPECT_EQ(shown(100'000), "100000");
    EXPECT_EQ(shown(0xFFFFFFFF), "-1");
}

class BitStringEditor : public Editors {
protected:
    static QTreeWidget& Rows(const CControls& dialog) { return dialog.Get<QTreeWidget>("Bits"); }
    // "name" or "*name" when it is ticked.
    static std::vector<std::string> Bits(const CControls& dialog) {
        std::vector<std::string> bits;
        for (int row = 0; row < Rows(dialog).topLevelItemCount(); ++row) {
            const QTreeWidgetItem& item = *Rows(dialog).topLevelItem(row);
            bits.push_back((item.checkState(0) == Qt::Checked ? "*" : "") + item.text(0).toStdString());
        }
        return bits;
    }
    static void Tick(const CControls& dialog, int row) {
        Rows(dialog).setCurrentItem(Rows(dialog).topLevelItem(row));
        Rows(dialog).setFocus();
        PressKey(Qt::Key_Space);
    }
    void SetNamed() { m_value.SetPropId(OBJ_ANALOG_INPUT, PROP_STATUS_FLAGS); }

    CPVBitString m_value;
    const Open m_open = Value(m_value);
};

TEST_F(BitStringEditor, NamesTheBitsOfTheProperty) {
    SetNamed();
    m_value.Value = {4, {0b0100}};
    EXPECT_TRUE(Use(m_open, BITS, [](const CControls& dialog) {
        EXPECT_THAT(Bits(dialog), ElementsAre("in-alarm", "fault", "*overridden", "out-of-service"));
        EXPECT_EQ(Rows(dialog).headerItem()->text(0), QStringLiteral("Name"));
        EXPECT_EQ(Rows(dialog).columnWidth(0), 190);
        EXPECT_FALSE(dialog.Get<QComboBox>("&Size").isEnabled());
        EXPECT_EQ(dialog.Get<QComboBox>("&Size").currentText(), QStringLiteral("4 bits"));
        Tick(dialog, 0);
        Tick(dialog, 2);
        EXPECT_THAT(Bits(dialog), ElementsAre("*in-alarm", "fault", "overridden", "out-of-service"));
        PressOk(dialog);
    }));
    EXPECT_EQ(m_value.Value, (BACSTAC_BIT_STRING{4, {0b0001}}));
}

TEST_F(BitStringEditor, TakesTheSizeFromTheNames) {
    SetNamed();
    m_value.Value = {7, {0b1111111}};
    EXPECT_TRUE(Use(m_open, BITS, PressOk));
    EXPECT_EQ(m_value.Value, (BACSTAC_BIT_STRING{4, {0b1111}}));
    m_value.Value = {1, {1}};
    EXPECT_TRUE(Use(m_open, BITS, PressOk));
    EXPECT_EQ(m_value.Value, (BACSTAC_BIT_STRING{4, {1}}));
}

TEST_F(BitStringEditor, NumbersBitsWithoutNames) {
    m_value.Value = {3, {0b101}};
    EXPECT_TRUE(Use(m_open, BITS, [](const CControls& dialog) {
        EXPECT_THAT(Bits(dialog), ElementsAre("*bit-0", "bit-1", "*bit-2"));
        const auto sizes = ItemsOf(dialog.Get<QComboBox>("&Size"));
        EXPECT_EQ(sizes.size(), 80U);
        EXPECT_EQ(sizes.front(), "1 bits");
        EXPECT_EQ(sizes.back(), "80 bits");
        EXPECT_EQ(dialog.Get<QComboBox>("&Size").currentText(), QStringLiteral("3 bits"));
        dialog.Choose("&Size", "80 bits");
        Tick(dialog, 79);
        PressOk(dialog);
    }));
    BACSTAC_BIT_STRING wanted{80, {0b101}};
    CBacGeneral::SetBitStringBit(wanted, 79, true);
    EXPECT_EQ(m_value.Value, wanted);
}

TEST_F(BitStringEditor, DrawsTheStoredBitsAgainWhenTheSizeChanges) {
    m_value.Value = {3, {0b101}};
    EXPECT_TRUE(Use(m_open, BITS, [](const CControls& dialog) {
        Tick(dialog, 1);
        EXPECT_THAT(Bits(dialog), ElementsAre("*bit-0", "*bit-1", "*bit-2"));
        dialog.Choose("&Size", "2 bits");
        EXPECT_THAT(Bits(dialog), ElementsAre("*bit-0", "bit-1"));
        dialog.Choose("&Size", "4 bits");
        EXPECT_THAT(Bits(dialog), ElementsAre("*bit-0", "bit-1", "*bit-2", "bit-3"));
        PressOk(dialog);
    }));
    EXPECT_EQ(m_value.Value, (BACSTAC_BIT_STRING{4, {0b101}}));
}

TEST_F(BitStringEditor, OpensWithoutARowWhenThereIsNoBit) {
    EXPECT_TRUE(Use(m_open, BITS, [](const CControls& dialog) {
        EXPECT_THAT(Bits(dialog), ElementsAre());
        EXPECT_EQ(dialog.Get<QComboBox>("&Size").currentIndex(), -1);
        PressOk(dialog);
    }));
    EXPECT_EQ(m_value.Value, BACSTAC_BIT_STRING{});
}

TEST_F(BitStringEditor, LeavesToTheByteWhatNobodyTouched) {
    BACSTAC_BIT_STRING odd{};
    std::memset(&odd, 0xA5, sizeof odd);
    for (const std::uint32_t size : {3U, 90U, 97U, 0xFFFFFFFFU}) {
        odd.BitCount = size;
        m_value.Value = odd;
        EXPECT_TRUE(Use(m_open, BITS, PressOk));
        EXPECT_EQ(m_value.Value, odd);
    }
}

class OctetStringEditor : public Editors {
protected:
    CPVOctetString m_value;
    const Open m_open = Value(m_value);
};

TEST_F(OctetStringEditor, HasTwoDigitsToAnOctet) {
    m_value.Value = {0x00, 0xAB};
    EXPECT_TRUE(Use(m_open, OCTETS, [](const CControls& dialog) {
        EXPECT_EQ(TextIn(dialog, "Value"), "00AB");
        dialog.Type("Value", "aBcD");
        PressOk(dialog);
    }));
    EXPECT_THAT(m_value.Value, ElementsAre(0xAB, 0xCD));
    EXPECT_TRUE(Use(m_open, OCTETS, Type("Value", "")));
    EXPECT_THAT(m_value.Value, ElementsAre());
}

TEST_F(OctetStringEditor, CannotBeLeftByOkWhileTheTextIsBad) {
    m_value.Value = {0x12};
    EXPECT_FALSE(Use(m_open, OCTETS, [](const CControls& dialog) {
        auto& ok = dialog.Get<QPushButton>("OK");
        EXPECT_TRUE(ok.isEnabled());
        for (const char* const text : {"A", "ABC", "GG", "1 ", "0x12", "\u00E9\u00E9"}) {
            dialog.Type("Value", text);
            EXPECT_FALSE(ok.isEnabled()) << text;
            PressKey(Qt::Key_Return);
            EXPECT_TRUE(dialog.GetRoot().isVisible());
        }
        dialog.Type("Value", "AB");
        EXPECT_TRUE(ok.isEnabled());
        PressCancel(dialog);
    }));
    EXPECT_THAT(m_value.Value, ElementsAre(0x12));
}

class StringEditor : public Editors {
protected:
    // What an untouched OK makes of the text.
    std::string Confirm(const std::string& text) {
        m_value.Value = text;
        EXPECT_TRUE(Use(m_open, STRING, PressOk));
        return m_value.Value;
    }
    CPVString m_value;
    const Open m_open = Value(m_value);
};

TEST_F(StringEditor, TakesAnyText) {
    m_value.Value = "room";
    for (const char* const text : {"Z\u00FCrich \u03A9", "", " blanks ", "&%s\\n"}) {
        Accept(m_open, STRING, "Value", text);
        EXPECT_EQ(m_value.Value, text);
    }
}

TEST_F(StringEditor, HasNoLimit) {
    const std::string text(100'000, 'x');
    m_value.Value = text;
    EXPECT_TRUE(Use(m_open, STRING, [](const CControls& dialog) {
        EXPECT_EQ(dialog.Get<QLineEdit>("Value").text().size(), 100'000);
        PressKey(Qt::Key_End);
        TypeText(dialog.Get<QLineEdit>("Value"), "y");
        PressOk(dialog);
    }));
    EXPECT_EQ(m_value.Value, text + "y");
}

TEST_F(StringEditor, LeavesToTheByteWhatNobodyTouched) {
    for (const char* const text :
         {"two\r\nlines", "\U0001F525", "a\ttab\x01", "caf\xE9 of another station", "\xF0\x9F", ""})
        EXPECT_EQ(Confirm(text), text);
}

TEST_F(Editors, APriorityIsOneOfSixteen) {
    int chosen = -1;
    const auto ask = [&](int priority, const CDialogScript::Action& use) {
        return Use(
            [&] {
                CEditPriorityDlg dialog(nullptr);
                dialog.Value = priority;
                const bool isTaken = dialog.Run();
                chosen = dialog.Value;
                return isTaken;
            },
            "Input priority for writing", use);
    };
    EXPECT_TRUE(ask(7, [](const CControls& dialog) {
        auto& combo = dialog.Get<QComboBox>("Value");
        EXPECT_EQ(combo.currentText(), QStringLiteral("08: Manual operator "));
        EXPECT_EQ(combo.count(), 16);
        dialog.Choose("Value", "16: Available");
        PressOk(dialog);
    }));
    EXPECT_EQ(chosen, 15);
    EXPECT_TRUE(ask(0, PressOk));
    EXPECT_EQ(chosen, 0);
    EXPECT_FALSE(ask(3, [](const CControls& dialog) {
        dialog.Choose("Value", "01: Manual-life safety ");
        PressKey(Qt::Key_Escape);
    }));
    EXPECT_EQ(chosen, 3);
}

class ClientCOVEditor : public Editors {
protected:
    std::string Shown() {
        std::string text;
        Use(m_open, COV, [&](const CControls& dialog) {
            text = TextIn(dialog, "Value");
            PressCancel(dialog);
        });
        return text;
    }
    CPVClientCOV m_value;
    const Open m_open = Value(m_value);
};

TEST_F(ClientCOVEditor, IsANumberOrTheDefault) {
    m_value.Value = {TYPE_NULL, 0};
    EXPECT_EQ(Shown(), "");
    EXPECT_TRUE(Use(m_open, COV, Type("Value", "0.5")));
    EXPECT_EQ(m_value.Value.Choice, static_cast<std::uint32_t>(TYPE_REAL));
    EXPECT_EQ(m_value.Value.Value, 0.5F);
    EXPECT_EQ(Shown(), "0.5");
    EXPECT_TRUE(Use(m_open, COV, Type("Value", "")));
    EXPECT_EQ(m_value.Value.Choice, static_cast<std::uint32_t>(TYPE_NULL));
    EXPECT_EQ(m_value.Value.Value, 0.0F);
}

TEST_F(ClientCOVEditor, RefusesWhatIsNeither) {
    m_value.Value = {TYPE_NULL, std::numeric_limits<float>::quiet_NaN()};
    for (const char* const text : {"1,5", "1e39", "nan", "x"})
        Refuse(m_open, COV, "Value", text, "Invalid real value");
}

TEST_F(ClientCOVEditor, LeavesWhatNobodyTouched) {
    m_value.Value = {77, 1.25F};
    EXPECT_TRUE(Use(m_open, COV, PressOk));
    EXPECT_EQ(m_value.Value.Choice, 77U);
    EXPECT_EQ(m_value.Value.Value, 1.25F);
    m_value.Value = {TYPE_NULL, 1.25F};
    EXPECT_TRUE(Use(m_open, COV, PressOk));
    EXPECT_EQ(m_value.Value.Value, 1.25F);
}

} // namespace
