#include "module/editors/ReferenceForms.h"

#include "api/bacnet/Enums.h"
#include "module/editors/MemberEditors.h"

namespace {

// ---- recipients

using Recipient = BACSTAC_RECIPIENT;

constexpr FormAlternative RECIPIENTS[] = {
    Alternative<Recipient, &Recipient::Device, OBJECT_ID_EDITOR,
                [](Recipient& value) {
                    value.Device = {OBJ_DEVICE, 0};
                }>("device-instance", 0, "device"),
    Alternative<Recipient, &Recipient::Address, ADDRESS_EDITOR, [](Recipient& value) { value.Address = {}; }>(
        "address", 1, "address"),
};

constexpr FormRow RECIPIENT_ROWS[] = {
    Choice<Recipient, &Recipient::Choice>("&Type", "&Value", RECIPIENTS),
};

// ---- address bindings

using Binding = BACSTAC_ADDRESS_BINDING;

constexpr FormRow BINDING_ROWS[] = {
    Field<Binding, &Binding::Device, OBJECT_ID_EDITOR>("&Device", "device"),
    Field<Binding, &Binding::Address, ADDRESS_EDITOR>("&Address", "address"),
};

// ---- setpoint references

using Setpoint = BACSTAC_SETPOINT_REF;

constexpr FormField WhenPresent(FormField field) {
    field.isEnabled = [](void* record) { return static_cast<Setpoint*>(record)->Present != 0; };
    return field;
}

constexpr FormRow SETPOINT_ROWS[] = {
    Flag<Setpoint, &Setpoint::Present>("&Present"),
    WhenPresent(Field<Setpoint, &Setpoint::Reference, OBJ_PROP_REF_EDITOR>("&Value", "value")),
};

// ---- read access

constexpr FormRow SPEC_ROWS[] = {
    Field<CPVReadAccessSpec, IN_VALUE<&BACSTAC_READ_ACCESS_SPEC::ObjectId>, OBJECT_ID_EDITOR>("&Object id",
                                                                                              "object-id"),
    List<CPVReadAccessSpec, &CPVReadAccessSpec::GetProperties>("Edit &properties..."),
};

constexpr FormRow RESULT_ROWS[] = {
    Field<CPVReadAccessResult, IN_VALUE<&BACSTAC_READ_ACCESS_RESULT::ObjectId>, OBJECT_ID_EDITOR>("&Object id",
                                                                                                  "object-id"),
    List<CPVReadAccessResult, &CPVReadAccessResult::GetItems>("Edit &properties..."),
};

} // namespace

CEditRecipientDlg::CEditRecipientDlg(QWidget* parent) : CRecordForm(parent, {"Input recipient", RECIPIENT_ROWS}) {}

CEditAddressBindindDlg::CEditAddressBindindDlg(QWidget* parent)
    : CRecordForm(parent, {"Input address-binding", BINDING_ROWS}) {}

CEditSetpointRefDlg::CEditSetpointRefDlg(QWidget* parent)
    : CRecordForm(parent, {"Input setpoint-reference", SETPOINT_ROWS}) {}

CEditReadAccessSpecDlg::CEditReadAccessSpecDlg(QWidget* parent)
    : CRecordForm(parent, {"Input read-access-spec", SPEC_ROWS}) {}

CEditReadAccessResultDlg::CEditReadAccessResultDlg(QWidget* parent)
    : CRecordForm(parent, {"Input read-access-result", RESULT_ROWS}) {}
