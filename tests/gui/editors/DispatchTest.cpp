// Which editor opens for which type of value.
#include "api/bacnet/Enums.h"
#include "tests/gui/editors/Editors.h"

#include <QWidget>

#include <memory>
#include <ostream>

namespace {

struct Expected {
    BACSTAC_DATA_TYPE type;
    const char* className;
    const char* title;
};

void PrintTo(const Expected& expected, std::ostream* to) {
    *to << expected.className;
}

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

std::unique_ptr<CPropertyValue> NewValue(BACSTAC_DATA_TYPE type) {
    return std::unique_ptr<CPropertyValue>(CPropertyValue::CreateValue(OBJ_ANALOG_VALUE, PROP_PRESENT_VALUE, type, 1));
}

class EditorOfType : public Editors, public ::testing::WithParamInterface<Expected> {
protected:
    const std::unique_ptr<CPropertyValue> m_value = NewValue(GetParam().type);
};

TEST_P(EditorOfType, OpensOneDialogWithItsTitleAndALabel) {
    ASSERT_NE(m_value, nullptr);
    const bool isParameter = GetParam().type >= TYPE_EVENT_PARAMETER_FIRST;
    EXPECT_FALSE(Use(Value(*m_value), GetParam().title, [&](const CControls& dialog) {
        EXPECT_STREQ(dialog.GetRoot().metaObject()->className(), GetParam().className);
        EXPECT_EQ(dialog.Texts().front(), isParameter ? "parameter" : "present-value");
        PressCancel(dialog);
    }));
    EXPECT_THAT(m_events.Take(), ::testing::ElementsAre("Dialog(" + std::string(GetParam().title) + ")"));
}

INSTANTIATE_TEST_SUITE_P(Types, EditorOfType, ::testing::ValuesIn(EXPECTED), [](const auto& row) {
    return std::string(row.param.type < 0 ? "AnyPrimitive" : "Type" + std::to_string(row.param.type));
});

class EditorTable : public Editors {};

TEST_F(EditorTable, HasTheTypesThatHaveEditorsAndNoOther) {
    std::vector<BACSTAC_DATA_TYPE> expected;
    for (const Expected& row : EXPECTED)
        expected.push_back(row.type);
    std::vector<BACSTAC_DATA_TYPE> found;
    for (const EditorEntry& entry : GetEditors())
        found.push_back(entry.type);
    EXPECT_EQ(found, expected);
}

} // namespace
