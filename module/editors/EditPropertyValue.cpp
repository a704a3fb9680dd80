#include "module/editors/EditPropertyValue.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "module/editors/EditActionCommandDlg.h"
#include "module/editors/EditAnyPrimitiveDlg.h"
#include "module/editors/EditBitStringDlg.h"
#include "module/editors/EditClientCOVDlg.h"
#include "module/editors/EditEPOutOfRange.h"
#include "module/editors/EditEnumDlg.h"
#include "module/editors/EditEventParameterDlg.h"
#include "module/editors/EditListDlg.h"
#include "module/editors/EditOctetStringDlg.h"
#include "module/editors/EditPrescaleDlg.h"
#include "module/editors/EditPropertyStateDlg.h"
#include "module/editors/EditReadResultItemDlg.h"
#include "module/editors/EditStringDlg.h"
#include "module/editors/EventParameterForms.h"
#include "module/editors/MemberEditors.h"
#include "module/editors/NotificationForms.h"
#include "module/editors/QuantityForms.h"
#include "module/editors/ReferenceForms.h"
#include "module/editors/ScheduleForms.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace {

// A value whose record is the member that the editor takes.
template <class Value, const auto& Editor>
bool EditRecord(QWidget* parent, CPropertyValue& value) {
    return Editor.edit(parent, value.GetPropName(), static_cast<Value&>(value).Value);
}

// A value whose numbers or bits have the names that its property gives them.
template <class Value, class Dialog>
bool EditNamed(QWidget* parent, CPropertyValue& value) {
    Dialog dialog(parent, CBacGeneral::GetEnumTypeId(value.GetPropId(), value.GetObjType()));
    return RunEditor(dialog, value.GetPropName(), static_cast<Value&>(value).Value);
}

// A dialog that edits the value, or its record.
template <class Value>
bool Run(auto& dialog, const std::string& label, CPropertyValue& value) {
    auto& typed = static_cast<Value&>(value);
    if constexpr (std::is_same_v<decltype(dialog.Value), Value>)
        return RunEditor(dialog, label, typed);
    else
        return RunEditor(dialog, label, typed.Value);
}

template <class Value, class Dialog>
bool EditForm(QWidget* parent, CPropertyValue& value) {
    Dialog dialog(parent);
    return Run<Value>(dialog, value.GetPropName(), value);
}

// ---- event parameters, whatever they are of

constexpr const char* PARAMETER = "parameter";
constexpr BACSTAC_DATA_TYPE EP = TYPE_EVENT_PARAMETER_FIRST;

template <class Value, class Dialog>
bool EditParameter(QWidget* parent, CPropertyValue& value) {
    Dialog dialog(parent);
    return Run<Value>(dialog, PARAMETER, value);
}

bool EditOutOfRange(QWidget* parent, CPropertyValue& value) {
    BACSTAC_EP_OUT_OF_RANGE& record = static_cast<CPVEPOutOfRange&>(value).Value;
    CEditEPOutOfRange dialog(parent, value.GetDataType() - EP);
    OutOfRangeSets sets{};
    sets.Real = record;
    if (!RunEditor(dialog, PARAMETER, sets))
        return false;
    record = sets.Real;
    return true;
}

// A number that is missing has no editor.
constexpr EditorEntry EDITORS[] = {
    {TYPE_ANY_PRIMITIVE, EditForm<CPVAnyPrimitive, CEditAnyPrimitiveDlg>},
    {TYPE_BOOLEAN, EditRecord<CPVBoolean, BOOLEAN_EDITOR>},
    {TYPE_UNSIGNED, EditRecord<CPVUnsigned, UNSIGNED_EDITOR>},
    {TYPE_SIGNED, EditRecord<CPVSigned, SIGNED_EDITOR>},
    {TYPE_REAL, EditRecord<CPVReal, REAL_EDITOR>},
    {TYPE_DOUBLE, EditRecord<CPVDouble, DOUBLE_EDITOR>},
    {TYPE_OCTET_STRING, EditForm<CPVOctetString, CEditOctetStringDlg>},
    {TYPE_BIT_STRING, EditNamed<CPVBitString, CEditBitStringDlg>},
    {TYPE_ENUMERATED, EditNamed<CPVEnumerated, CEditEnumDlg>},
    {TYPE_DATE, EditRecord<CPVDate, DATE_EDITOR>},
    {TYPE_TIME, EditRecord<CPVTime, TIME_EDITOR>},
    {TYPE_OBJECT_ID, EditRecord<CPVObjectId, OBJECT_ID_EDITOR>},
    {TYPE_STRING, EditForm<CPVString, CEditStringDlg>},
    {TYPE_DATE_TIME, EditRecord<CPVDateTime, DATE_TIME_EDITOR>},
    {TYPE_OBJ_PROP_REF, EditRecord<CPVObjPropRef, OBJ_PROP_REF_EDITOR>},
    {TYPE_PROPERTY_STATE, EditForm<CPVPropertyState, CEditPropertyStateDlg>},
    {TYPE_DATE_RANGE, EditRecord<CPVDateRange, DATE_RANGE_EDITOR>},
    {TYPE_WEEK_N_DAY, EditRecord<CPVWeekNDay, WEEK_N_DAY_EDITOR>},
    {TYPE_CALENDAR_ENTRY, EditRecord<CPVCalendarEntry, CALENDAR_ENTRY_EDITOR>},
    {TYPE_TIME_VALUE, EditForm<CPVTimeValue, CEditTimeValueDlg>},
    {TYPE_SPECIAL_EVENT, EditForm<CPVSpecialEvent, CEditSpecialEventDlg>},
    {TYPE_RECIPIENT, EditRecord<CPVRecipient, RECIPIENT_EDITOR>},
    {TYPE_SETPOINT_REF, EditForm<CPVSetpointRef, CEditSetpointRefDlg>},
    {TYPE_DESTINATION, EditForm<CPVDestination, CEditDestinationDlg>},
    {TYPE_TIME_STAMP, EditForm<CPVTimeStamp, CEditTimeStampDlg>},
    {TYPE_PROPERTY_REF, EditRecord<CPVPropertyRef, PROPERTY_REF_EDITOR>},
    {TYPE_ADDRESS_BINDING, EditForm<CPVAddressBinding, CEditAddressBindindDlg>},
    {TYPE_DEV_OBJ_PROP_REF, EditRecord<CPVDevObjPropRef, DEV_OBJ_PROP_REF_EDITOR>},
    {TYPE_CLIENT_COV, EditForm<CPVClientCOV, CEditClientCOVDlg>},
    {TYPE_READ_ACCESS_SPEC, EditForm<CPVReadAccessSpec, CEditReadAccessSpecDlg>},
    {TYPE_READ_ACCESS_RESULT, EditForm<CPVReadAccessResult, CEditReadAccessResultDlg>},
    {TYPE_EVENT_PARAMETER, EditForm<CPVEventParameter, CEditEventParameterDlg>},
    {TYPE_COV_SUBSCRIPTION, EditForm<CPVCOVSubscription, CEditCOVSubscriptionDlg>},
    {TYPE_DEV_OBJ_REF, EditRecord<CPVDevObjRef, DEV_OBJ_REF_EDITOR>},
    {TYPE_PRESCALE, EditForm<CPVPrescale, CEditPrescaleDlg>},
    {TYPE_SCALE, EditForm<CPVScale, CEditScaleDlg>},
    {TYPE_ACTION_COMMAND, EditForm<CPVActionCommand, CEditActionCommandDlg>},
    {TYPE_SHED_LEVEL, EditForm<CPVShedLevel, CEditShedLevelDlg>},
    {TYPE_READ_RESULT_ITEM, EditForm<CPVReadResultItem, CEditReadResultItemDlg>},
    {EP + 0, EditParameter<CPVEPChangeOfBitString, CEditEPChangeOfBitString>},
    {EP + 1, EditParameter<CPVEPChangeOfState, CEditEPChangeOfState>},
    {EP + 2, EditParameter<CPVEPChangeOfValue, CEditEPChangeOfValue>},
    {EP + 3, EditParameter<CPVEPCommandFailure, CEditEPCommandFailure>},
    {EP + 4, EditParameter<CPVEPFloatingLimit, CEditEPFloatingLimit>},
    {EP + 5, EditOutOfRange},
    {EP + 8, EditParameter<CPVEPChangeOfLifeSafety, CEditEPChangeOfLifeSafety>},
    {EP + 9, EditParameter<CPVEPExtended, CEditEPExtended>},
    {EP + 10, EditParameter<CPVEPBufferReady, CEditEPBufferReady>},
    {EP + 11, EditParameter<CPVEPUnsignedRange, CEditEPUnsignedRange>},
};

static_assert(std::ranges::is_sorted(EDITORS, {}, &EditorEntry::type));

} // namespace

std::span<const EditorEntry> GetEditors() {
    return EDITORS;
}

bool EditPropertyValue(QWidget* parent, CPropertyValue* value) {
    if (!value)
        return false;
    if (value->IsCollection())
        return EditList(parent, static_cast<CPropertyValueList&>(*value));
    const auto entry = std::ranges::lower_bound(EDITORS, value->GetDataType(), {}, &EditorEntry::type);
    return entry != std::end(EDITORS) && entry->type == value->GetDataType() && entry->edit(parent, *value);
}
