#include "module/console/PasswordInput.h"

#include "module/console/NarrowText.h"
#include "module/widgets/DialogButtons.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QVBoxLayout>

CPasswordInput::CPasswordInput(QWidget* parent, const std::string& password)
    : QDialog(parent), m_edit(new QLineEdit(FromNarrow(password), this)) {
    setWindowTitle(QStringLiteral("Password"));
    m_edit->setEchoMode(QLineEdit::Password);
    m_edit->setAccessibleName(windowTitle());
    m_edit->selectAll();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_edit);
    layout->addWidget(NewOkCancel(*this));
}

std::string CPasswordInput::GetPassword() const {
    return ToNarrow(m_edit->text());
}
