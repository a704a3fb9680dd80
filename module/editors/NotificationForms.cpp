#include "module/editors/NotificationForms.h"

#include "module/editors/EditRealDlg.h"
#include "module/editors/MemberEditors.h"
#include "module/editors/NumberChecks.h"

#include <functional>

namespace {

// ---- destinations

using Destination = BACSTAC_DESTINATION;

constexpr FormRow DESTINATION_ROWS[] = {
    Field<Destination, &Destination::ValidDays, DAYS_EDITOR>("&Valid days", "valid-days"),
    Field<Destination, &Destination::From, TIME_EDITOR>("&From time", "from-time"),
    Field<Destination, &Destination::To, TIME_EDITOR>("&To time", "to-time"),
    Field<Destination, &Destination::Recipient, RECIPIENT_EDITOR>("&Recipient", "recipient"),
    Field<Destination, &Destination::ProcessId, UNSIGNED_EDITOR>("&Process ID", "process-id"),
    Field<Destination, &Destination::Confirmed, BOOLEAN_EDITOR>("&Conf. notif.", "issue-conf-notification"),
    Field<Destination, &Destination::Transitions, TRANSITIONS_EDITOR>("Tran&sitions", "transitions"),
};

// ---- time stamps

using Stamp = BACSTAC_TIME_STAMP;

constexpr FormAlternative STAMPS[] = {
    Alternative<Stamp, &Stamp::Time, TIME_EDITOR, [](Stamp& value) { value.Time = {}; }>("time", 0, "time"),
    Alternative<Stamp, &Stamp::SequenceNumber, UNSIGNED_EDITOR, [](Stamp& value) { value.SequenceNumber = 0; }>(
        "sequence-number", 1, "sequence-number"),
    Alternative<Stamp, &Stamp::DateTime, DATE_TIME_EDITOR, [](Stamp& value) { value.DateTime = {}; }>("date-time", 2,
                                                                                                      "date-time"),
};

constexpr FormRow STAMP_ROWS[] = {
    Choice<Stamp, &Stamp::Choice>("&Type", "&Value", STAMPS),
};

// ---- subscriptions

using Subscription = BACSTAC_COV_SUBSCRIPTION;

bool HasIncrement(const Subscription& value) {
    return (value.Mask & BACSTAC_COV_INCREMENT) != 0;
}

std::string PrintIncrement(const Subscription& value) {
    return HasIncrement(value) ? REAL_EDITOR.print(value.Increment) : std::string();
}

bool EditIncrement(QWidget* parent, const std::string& label, Subscription& value) {
    CEditRealDlg dialog(parent);
    dialog.SetLabel(label);
    dialog.IsDouble = false;
    dialog.MayBeNull = true;
    dialog.IsNull = !HasIncrement(value);
    dialog.Value = value.Increment;
    if (!dialog.Run())
        return false;
    value.Mask = dialog.IsNull ? value.Mask & ~BACSTAC_COV_INCREMENT : value.Mask | BACSTAC_COV_INCREMENT;
    if (!dialog.IsNull)
        value.Increment = Narrowed(dialog.Value, value.Increment);
    return true;
}

// With the bit of the mask that goes with it.
constexpr MemberEditor<Subscription> INCREMENT_EDITOR{PrintIncrement, EditIncrement};

constexpr auto RECIPIENT = [](Subscription & value) -> auto& {
    return value.Recipient.Recipient;
};
constexpr auto PROCESS_ID = [](Subscription & value) -> auto& {
    return value.Recipient.ProcessId;
};

constexpr FormRow SUBSCRIPTION_ROWS[] = {
    Field<Subscription, RECIPIENT, RECIPIENT_EDITOR>("&Recipient", "recipient"),
    Field<Subscription, PROCESS_ID, UNSIGNED_EDITOR>("&Process ID", "process-id"),
    Field<Subscription, &Subscription::Monitored, OBJ_PROP_REF_EDITOR>("&Monitored property", "monitored-property"),
    Flag<Subscription, &Subscription::Confirmed>("&Confirmed notifications"),
    Field<Subscription, &Subscription::TimeRemaining, UNSIGNED_EDITOR>("&Time remaining", "time-remaining"),
    Field<Subscription, std::identity{}, INCREMENT_EDITOR>("COV &increment", "cov-increment"),
};

} // namespace

CEditDestinationDlg::CEditDestinationDlg(QWidget* parent)
    : CRecordForm(parent, {"Input destination", DESTINATION_ROWS}) {}

CEditTimeStampDlg::CEditTimeStampDlg(QWidget* parent) : CRecordForm(parent, {"Input time-stamp", STAMP_ROWS}) {}

CEditCOVSubscriptionDlg::CEditCOVSubscriptionDlg(QWidget* parent)
    : CRecordForm(parent, {"Input cov-subscription", SUBSCRIPTION_ROWS}) {}
