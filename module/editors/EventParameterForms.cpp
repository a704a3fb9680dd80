#include "module/editors/EventParameterForms.h"

#include "api/bacnet/Enums.h"
#include "module/editors/MemberEditors.h"

namespace {

template <class Record, auto Access = &Record::TimeDelay>
constexpr FormField TimeDelay() {
    return Field<Record, Access, SECONDS_EDITOR>("&Time delay", "time-delay");
}

// ---- change of bit string, of state, of life safety

constexpr FormRow BIT_STRING_ROWS[] = {
    TimeDelay<CPVEPChangeOfBitString, IN_VALUE<&BACSTAC_EP_CHANGE_OF_BITSTRING::TimeDelay>>(),
    Field<CPVEPChangeOfBitString, IN_VALUE<&BACSTAC_EP_CHANGE_OF_BITSTRING::BitMask>, BIT_STRING_EDITOR>("&Bit mask",
                                                                                                         "bit-mask"),
    List<CPVEPChangeOfBitString, &CPVEPChangeOfBitString::GetValues>("Edit value &list..."),
};

constexpr FormRow STATE_ROWS[] = {
    TimeDelay<CPVEPChangeOfState, IN_VALUE<&BACSTAC_EP_CHANGE_OF_STATE::TimeDelay>>(),
    List<CPVEPChangeOfState, &CPVEPChangeOfState::GetValues>("Edit value &list..."),
};

constexpr FormRow LIFE_SAFETY_ROWS[] = {
    TimeDelay<CPVEPChangeOfLifeSafety, IN_VALUE<&BACSTAC_EP_CHANGE_OF_LIFE_SAFETY::TimeDelay>>(),
    Field<CPVEPChangeOfLifeSafety, IN_VALUE<&BACSTAC_EP_CHANGE_OF_LIFE_SAFETY::Mode>, DEV_OBJ_PROP_REF_EDITOR>(
        "&Mode property", "mode-property"),
    List<CPVEPChangeOfLifeSafety, &CPVEPChangeOfLifeSafety::GetLifeSafetyAlarmValues>(
        "Edit li&fe-safety-alarm-values..."),
    List<CPVEPChangeOfLifeSafety, &CPVEPChangeOfLifeSafety::GetAlarmValues>("Edit &alarm-values..."),
};

// ---- change of value

using ChangeOfValue = BACSTAC_EP_CHANGE_OF_VALUE;

constexpr FormAlternative CRITERIA[] = {
    Alternative<ChangeOfValue, &ChangeOfValue::BitMask, BIT_STRING_EDITOR,
                [](ChangeOfValue& value) { value.BitMask = {}; }>("bit-mask", 0, "bit-mask criteria"),
    Alternative<ChangeOfValue, &ChangeOfValue::Increment, REAL_EDITOR,
                [](ChangeOfValue& value) { value.Increment = 0; }>("increment", 1, "increment criteria"),
};

constexpr FormRow VALUE_ROWS[] = {
    TimeDelay<ChangeOfValue>(),
    Choice<ChangeOfValue, &ChangeOfValue::Choice>("Criteria t&ype", "Criteria &value", CRITERIA),
};

// ---- command failure, floating limit

using CommandFailure = BACSTAC_EP_COMMAND_FAILURE;

constexpr FormRow COMMAND_FAILURE_ROWS[] = {
    TimeDelay<CommandFailure>(),
    Field<CommandFailure, &CommandFailure::Feedback, DEV_OBJ_PROP_REF_EDITOR>("&Feedback property",
                                                                              "feedback-property"),
};

using FloatingLimit = BACSTAC_EP_FLOATING_LIMIT;

constexpr FormRow FLOATING_LIMIT_ROWS[] = {
    TimeDelay<FloatingLimit>(),
    Field<FloatingLimit, &FloatingLimit::Setpoint, DEV_OBJ_PROP_REF_EDITOR>("&Setpoint", "setpoint"),
    Field<FloatingLimit, &FloatingLimit::LowDiffLimit, REAL_EDITOR>("&Low diff. limit", "low-limit"),
    Field<FloatingLimit, &FloatingLimit::HighDiffLimit, REAL_EDITOR>("&High diff. limit", "high-limit"),
    Field<FloatingLimit, &FloatingLimit::DeadBand, REAL_EDITOR>("&Dead band", "dead-band"),
};

// ---- extended, buffer ready, unsigned range

constexpr FormRow EXTENDED_ROWS[] = {
    Field<CPVEPExtended, IN_VALUE<&BACSTAC_EP_EXTENDED::VendorId>, UNSIGNED_EDITOR>("&Vendor id", "vendor-id"),
    Field<CPVEPExtended, IN_VALUE<&BACSTAC_EP_EXTENDED::ExtendedEventType>, UNSIGNED_EDITOR>("&Event type",
                                                                                             "extended-event-type"),
    List<CPVEPExtended, &CPVEPExtended::GetParameters>("Edit &parameters..."),
};

using BufferReady = BACSTAC_EP_BUFFER_READY;

constexpr FormRow BUFFER_READY_ROWS[] = {
    Field<BufferReady, &BufferReady::NotifyThreshold, UNSIGNED_EDITOR>("&Notify threshold", "notify-threshold"),
    Field<BufferReady, &BufferReady::PreviousNotifyCount, UNSIGNED_EDITOR>("&Prev. notify count", "prev-notify-count"),
};

using UnsignedRange = BACSTAC_EP_UNSIGNED_RANGE;

constexpr FormRow UNSIGNED_RANGE_ROWS[] = {
    TimeDelay<UnsignedRange>(),
    Field<UnsignedRange, &UnsignedRange::LowLimit, UNSIGNED_EDITOR>("&Low limit", "low-limit"),
    Field<UnsignedRange, &UnsignedRange::HighLimit, UNSIGNED_EDITOR>("&High limit", "high-limit"),
};

} // namespace

CEditEPChangeOfBitString::CEditEPChangeOfBitString(QWidget* parent)
    : CRecordForm(parent, {"Input ep-change-of-bitstring", BIT_STRING_ROWS}) {}

CEditEPChangeOfState::CEditEPChangeOfState(QWidget* parent)
    : CRecordForm(parent, {"Input ep-change-of-state", STATE_ROWS}) {}

CEditEPChangeOfValue::CEditEPChangeOfValue(QWidget* parent)
    : CRecordForm(parent, {"Input ep-change-of-value", VALUE_ROWS}) {}

CEditEPCommandFailure::CEditEPCommandFailure(QWidget* parent)
    : CRecordForm(parent, {"Input ep-command-failure", COMMAND_FAILURE_ROWS}) {}

CEditEPFloatingLimit::CEditEPFloatingLimit(QWidget* parent)
    : CRecordForm(parent, {"Input ep-floating-limit", FLOATING_LIMIT_ROWS}) {}

CEditEPChangeOfLifeSafety::CEditEPChangeOfLifeSafety(QWidget* parent)
    : CRecordForm(parent, {"Input ep-change-of-life-safety", LIFE_SAFETY_ROWS}) {}

// The values of both lists have the names of life safety states, which the event's parameters do not know.
void CEditEPChangeOfLifeSafety::Load() {
    constexpr BACSTAC_PROPERTY_ID TRACKING_VALUE = 164;
    for (CPropertyValueList* const list : {&Value.GetLifeSafetyAlarmValues(), &Value.GetAlarmValues()})
        list->SetPropId(OBJ_EVENT_ENROLLMENT, TRACKING_VALUE);
    CRecordForm::Load();
}

CEditEPExtended::CEditEPExtended(QWidget* parent) : CRecordForm(parent, {"Input ep-extended", EXTENDED_ROWS}) {}

CEditEPBufferReady::CEditEPBufferReady(QWidget* parent)
    : CRecordForm(parent, {"Input ep-buffer-ready", BUFFER_READY_ROWS}) {}

CEditEPUnsignedRange::CEditEPUnsignedRange(QWidget* parent)
    : CRecordForm(parent, {"Input ep-unsigned-range", UNSIGNED_RANGE_ROWS}) {}
