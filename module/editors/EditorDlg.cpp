#include "module/editors/EditorDlg.h"

#include "module/console/Busy.h"
#include "module/console/GuiOperator.h"
#include "module/console/NarrowText.h"
#include "module/widgets/DialogButtons.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <map>

namespace {

// By class, for the run of the program.
std::map<std::string, QSize>& Sizes() {
    static std::map<std::string, QSize> sizes;
    return sizes;
}

void SelectText(QWidget& field) {
    if (auto* const edit = qobject_cast<QLineEdit*>(&field))
        edit->selectAll();
    else if (auto* const spin = qobject_cast<QAbstractSpinBox*>(&field))
        spin->selectAll();
    else if (auto* const combo = qobject_cast<QComboBox*>(&field); combo && combo->isEditable())
        combo->lineEdit()->selectAll();
}

} // namespace

CEditorDlg::CEditorDlg(QWidget* parent, const char* title)
    : QDialog(parent), m_label(new QLabel(QStringLiteral("Value"), this)), m_content(new QVBoxLayout),
      m_buttons(NewOkCancel(*this)) {
    setWindowTitle(QString::fromLatin1(title));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
    layout->addLayout(m_content, 1);
    layout->addWidget(m_buttons);
}

void CEditorDlg::SetLabel(const std::string& label) {
    if (!label.empty())
        m_label->setText(FromNarrow(label).replace(u'&', QStringLiteral("&&")));
}

QPushButton& CEditorDlg::GetOkButton() const {
    return *m_buttons->button(QDialogButtonBox::Ok);
}

std::vector<QWidget*> CEditorDlg::Fields() const {
    std::vector<QWidget*> fields;
    for (QWidget* widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain())
        if (isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus) != 0 && !widget->focusProxy() &&
            !m_buttons->isAncestorOf(widget))
            fields.push_back(widget);
    return fields;
}

// They are made before the fields, and the order of Tab is that of making.
void CEditorDlg::PutButtonsLast() {
    const std::vector<QWidget*> fields = Fields();
    QWidget* last = fields.empty() ? nullptr : fields.back();
    for (QWidget* const button :
         {m_buttons->button(QDialogButtonBox::Ok), m_buttons->button(QDialogButtonBox::Cancel)}) {
        setTabOrder(last, button);
        last = button;
    }
}

void CEditorDlg::Enter(QWidget& field) {
    field.setFocus();
    SelectText(field);
}

bool CEditorDlg::Run() {
    Load();
    PutButtonsLast();
    const std::vector<QWidget*> fields = Fields();
    const auto isUsable = [this](const QWidget* field) { return field->isEnabledTo(this) && !field->isHidden(); };
    if (const auto first = std::ranges::find_if(fields, isUsable); first != fields.end()) {
        m_label->setBuddy(*first);
        Enter(**first);
    }
    if (const auto size = Sizes().find(metaObject()->className()); size != Sizes().end())
        resize(size->second);
    return RunModal(*this) == Accepted;
}

void CEditorDlg::accept() {
    if (Store())
        QDialog::accept();
}

void CEditorDlg::done(int result) {
    Sizes()[metaObject()->className()] = size();
    QDialog::done(result);
}

bool CEditorDlg::Refuse(const char* message, QWidget& field) {
    ShowError(*CGuiOperator::Get(), message);
    Enter(field);
    return false;
}
