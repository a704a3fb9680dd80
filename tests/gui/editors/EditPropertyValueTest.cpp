// The way from the type of a value to its editor, for all types there are.
#include "module/editors/EditPropertyValue.h"

#include "tests/gui/editors/Editors.h"
#include "tests/gui/editors/RandomValue.h"

#include <QDialog>

#include <algorithm>
#include <vector>

namespace {

using ::testing::IsEmpty;

struct Expected {
    BACSTAC_DATA_TYPE type;
    const char* name; // of the class
    const char* title;
};

constexpr Expected EXPECTED[] = {
    {-2, "CEditAnyPrimitiveDlg", "Input any-primitive"},
    {1, "CEditBooleanDlg", "Input boolean"},
    {2, "CEditUnsignedDlg", "Input unsigned"},
    {3, "CEditSignedDlg", "Input signed"},
    {4, "CEditRealDlg", "Input real"},
    {5, "CEditRealDlg", "Input real"},
    {6, "CEditOctetStringDlg", "Input octet string"},
    {8, "CEditBitStringDlg", "Input bit-string"},
    {9, "CEditEnumDlg", "Input enumerated"},
    {10, "CEditDateTimeDlg", "Input date-time"},
    {11, "CEditDateTimeDlg", "Input date-time"},
    {12, "CEditDevObjPropRefDlg", "Input device-object-property"},
    {13, "CEditStringDlg", "Input string"},
    {21, "CEditDateTimeDlg", "Input date-time"},
    {22, "CEditDevObjPropRefDlg", "Input device-object-property"},
    {23, "CEditPropertyStateDlg", "Input property-state"},
    {24, "CEditDateRangeDlg", "Input date-range"},
    {25, "CEditWeekAndDayDlg", "Input week-n-day"},
    {26, "CEditCalendarEntryDlg", "Input calendar-entry"},
    {27, "CEditTimeValueDlg", "Input time-value"},
    {28, "CEditSpecialEventDlg", "Input special-event"},
    {30, "CEditRecipientDlg", "Input recipient"},
    {31, "CEditSetpointRefDlg", "Input setpoint-reference"},
    {32, "CEditDestinationDlg", "Input destination"},
    {34, "CEditTimeStampDlg", "Input time-stamp"},
    {35, "CEditDevObjPropRefDlg", "Input device-object-property"},
    {36, "CEditAddressBindindDlg", "Input address-binding"},
    {37, "CEditDevObjPropRefDlg", "Input device-object-property"},
    {38, "CEditClientCOVDlg", "Input client-cov"},
    {41, "CEditReadAccessSpecDlg", "Input read-access-spec"},
    {42, "CEditReadAccessResultDlg", "Input read-access-result"},
    {43, "CEditEventParameterDlg", "Input event-parameter"},
    {44, "CEditCOVSubscriptionDlg", "Input cov-subscription"},
    {45, "CEditDevObjPropRefDlg", "Input device-object-property"},
    {48, "CEditPrescaleDlg", "Input prescale"},
    {49, "CEditScaleDlg", "Input scale"},
    {50, "CEditActionCommandDlg", "Input action-command"},
    {51, "CEditShedLevelDlg", "Input shed-level"},
    {56, "CEditReadResultItemDlg", "Input read-result-item"},
    {1000, "CEditEPChangeOfBitString", "Input ep-change-of-bitstring"},
    {1001, "CEditEPChangeOfState", "Input ep-change-of-state"},
    {1002, "CEditEPChangeOfValue", "Input ep-change-of-value"},
    {1003, "CEditEPCommandFailure", "Input ep-command-failure"},
    {1004, "CEditEPFloatingLimit", "Input ep-floating-limit"},
    {1005, "CEditEPOutOfRange", "Input ep-out-of-range"},
    {1008, "CEditEPChangeOfLifeSafety", "Input ep-change-of-life-safety"},
    {1009, "CEditEPExtended", "Input ep-extended"},
    {1010, "CEditEPBufferReady", "Input ep-buffer-ready"},
    {1011, "CEditEPUnsignedRange", "Input ep-unsigned-range"},
};

void PrintTo(const Expected& expected, std::ostream* to) {
    *to << expected.type;
}

// A value of whatever type, for which no editor may look at anything but that.
class COfType : public CPVElement {
public:
    explicit COfType(BACSTAC_DATA_TYPE type) : m_type(type) {}
    CPropertyValue* Clone() const override { return new COfType(*this); }
    BACSTAC_DATA_TYPE GetDataType() const override { return m_type; }
    void* GetDataPtr() override { return nullptr; }
    bool Load(const bacnet::BufferView&, const unsigned char*) override { return false; }
    bool Store(bacnet::Sink&) const override { return false; }
    unsigned ElementSize() const override { return 0; }
    unsigned ReferredSize() const override { return 0; }

private:
    const BACSTAC_DATA_TYPE m_type;
};

using EditPropertyValueOf = Editors;

TEST_F(EditPropertyValueOf, NothingShowsNothing) {
    EXPECT_FALSE(OnGui([] { return EditPropertyValue(nullptr, nullptr); }));
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(EditPropertyValueOf, ATypeWithoutEditorShowsNothing) {
    std::vector<BACSTAC_DATA_TYPE> types{TYPE_RAW, TYPE_NONE, -100, INT32_MIN, INT32_MAX, 1100, 1200};
    for (BACSTAC_DATA_TYPE type = 0; type < 1020; ++type)
        if (std::ranges::find(EXPECTED, type, &Expected::type) == std::end(EXPECTED))
            types.push_back(type);
    for (const BACSTAC_DATA_TYPE type : types) {
        COfType value(type);
        EXPECT_FALSE(OnGui(Value(value))) << type;
    }
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST(EditorTable, HasTheTypesThatAreExpected) {
    std::vector<BACSTAC_DATA_TYPE> types;
    for (const EditorEntry& editor : GetEditors())
        types.push_back(editor.type);
    std::vector<BACSTAC_DATA_TYPE> expected;
    for (const Expected& row : EXPECTED)
        expected.push_back(row.type);
    EXPECT_EQ(types, expected);
}

class EditorOf : public Editors, public ::testing::WithParamInterface<Expected> {
protected:
    // Opens the editor, checks what it is, and does this.
    void Open(CPropertyValue& value, bool isTaken, const CDialogScript::Action& use) {
        m_events.Take();
        EXPECT_EQ(Use(Value(value), GetParam().title,
                      [&](const CControls& dialog) {
                          EXPECT_STREQ(dialog.GetRoot().metaObject()->className(), GetParam().name);
                          use(dialog);
                      }),
                  isTaken);
        EXPECT_THAT(m_events.Take(), ::testing::ElementsAre(std::string("Dialog(") + GetParam().title + ")"));
    }
};

TEST_P(EditorOf, OpensAndLeavesTheValueOnCancel) {
    const auto value = NewValue(GetParam().type);
    ASSERT_TRUE(value);
    const ValueBytes before = BytesOf(*value);
    Open(*value, false, PressCancel);
    EXPECT_EQ(BytesOf(*value), before);
}

TEST_P(EditorOf, IsConfirmedWithEnterAndLeftWithEscape) {
    const auto value = NewValue(GetParam().type);
    const ValueBytes before = BytesOf(*value);
    Open(*value, false, [](const CControls&) { PressKey(Qt::Key_Escape); });
    Open(*value, true, [](const CControls&) { PressKey(Qt::Key_Return); });
    EXPECT_EQ(BytesOf(*value), before);
}

TEST_P(EditorOf, NamesThePropertyOrTheParameter) {
    const auto value = NewValue(GetParam().type);
    value->SetPropId(OBJ_ANALOG_INPUT, PROP_PRESENT_VALUE);
    const bool isParameter = GetParam().type >= TYPE_EVENT_PARAMETER_FIRST;
    Open(*value, false, [&](const CControls& dialog) {
        EXPECT_EQ(dialog.Texts().front(), isParameter ? "parameter" : "present-value");
        PressCancel(dialog);
    });
    value->SetPropId(OBJ_NO_TYPE, PROP_NO_PROPERTY);
    Open(*value, false, [&](const CControls& dialog) {
        EXPECT_EQ(dialog.Texts().front(), isParameter ? "parameter" : "Value");
        PressCancel(dialog);
    });
}

TEST_P(EditorOf, GivesBackToTheByteWhatNobodyTouched) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) // every dialog takes several times as long
    constexpr unsigned SEEDS = 100;
#else
    constexpr unsigned SEEDS = 1000;
#endif
    for (unsigned seed = 0; seed < SEEDS && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        const auto value = RandomValue(GetParam().type, seed);
        ASSERT_TRUE(value);
        const ValueBytes before = Untouched(*value);
        Open(*value, true, [](const CControls& dialog) {
            EXPECT_TRUE(dialog.GetRoot().isVisible());
            PressOk(dialog);
        });
        EXPECT_EQ(BytesOf(*value), before);
    }
}

INSTANTIATE_TEST_SUITE_P(Type, EditorOf, ::testing::ValuesIn(EXPECTED), [](const auto& row) {
    const BACSTAC_DATA_TYPE type = row.param.type;
    return type < 0 ? "Any" : std::to_string(type);
});

} // namespace
