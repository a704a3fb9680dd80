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

QWidget* CEditorDlg::FirstField() const {
    const auto isField = [this](const QWidget& widget) {
        return widget.isEnabledTo(this) && (widget.focusPolicy() & Qt::TabFocus) != 0 && !widget.isHidden();
    };
    for (QWidget* widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain())
        if (isAncestorOf(widget) && isField(*widget))
            return widget;
    return nullptr;
}

bool CEditorDlg::Run() {
    Load();
    if (QWidget* const field = FirstField()) {
        m_label->setBuddy(field);
        field->setFocus();
        SelectText(*field);
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
    field.setFocus();
    SelectText(field);
    return false;
}
