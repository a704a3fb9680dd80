#include "module/editors/EditActionCommandDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/ActionFields.h"
#include "module/editors/MemberEditors.h"
#include "module/widgets/LimitEdit.h"

#include <QComboBox>
#include <QPushButton>

namespace {

constexpr int DELAY_DIGITS = 10;

using Command = CPVActionCommand;

// The value has the names and the types of the property that it is written to.
void FollowReference(Command& command) {
    const BACSTAC_DEV_OBJ_PROP_REF& reference = command.Value.Reference;
    command.GetValue().SetPropId(reference.ObjectId.Type, reference.Property);
}

std::string PrintReference(const Command& command) {
    return DEV_OBJ_PROP_REF_EDITOR.print(command.Value.Reference);
}

bool EditReference(QWidget* parent, const std::string& label, Command& command) {
    if (!DEV_OBJ_PROP_REF_EDITOR.edit(parent, label, command.Value.Reference))
        return false;
    FollowReference(command);
    return true;
}

constexpr MemberEditor<Command> REFERENCE_EDITOR{PrintReference, EditReference};

constexpr FormRow VALUE_ROWS[] = {
    Field<Command, std::identity{}, REFERENCE_EDITOR>("&Property", "property"),
    Field<Command, &Command::GetValue, ANY_PRIMITIVE_EDITOR>("&Value", "value"),
};

constexpr FormRow FLAG_ROWS[] = {
    Flag<Command, IN_VALUE<&BACSTAC_ACTION_COMMAND::QuitOnFailure>>("&Quit on failure"),
    Flag<Command, IN_VALUE<&BACSTAC_ACTION_COMMAND::WriteSuccessful>>("&Write successful"),
};

} // namespace

CEditActionCommandDlg::CEditActionCommandDlg(QWidget* parent)
    : CRecordForm(parent, {"Input action-command", VALUE_ROWS}), m_priority(new QComboBox(this)),
      m_postDelay(new CLimitEdit(this, DELAY_DIGITS)) {
    m_priority->addItem(QStringLiteral("*"));
    for (int priority = 1; priority <= MOST_PRIORITY; ++priority)
        m_priority->addItem(QString::number(priority));
    AddRow("&Priority", *m_priority);
    AddRow("Post &delay", *m_postDelay);
    AddRows(FLAG_ROWS);
}

void CEditActionCommandDlg::Load() {
    FollowReference(Value);
    m_priority->setCurrentIndex(PriorityItem(Value.Value.Priority));
    m_postDelay->setText(FromNarrow(ShowPostDelay(Value.Value)));
    connect(m_priority, &QComboBox::currentIndexChanged, this,
            [this](int item) { Value.Value.Priority = PriorityOfItem(item); });
    connect(m_postDelay, &QLineEdit::textChanged, this, &CEditActionCommandDlg::OnPostDelay);
    CRecordForm::Load();
}

void CEditActionCommandDlg::OnPostDelay(const QString& text) {
    GetOkButton().setEnabled(StorePostDelay(ToNarrow(text), Value.Value));
}
