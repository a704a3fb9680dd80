#include "module/editors/EditProp.h"

#include "module/console/NarrowText.h"
#include "module/editors/FindBar.h"
#include "module/editors/ViewerText.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextOption>
#include <QVBoxLayout>

namespace {

constexpr QSize SIZE(460, 380);
constexpr QSize LEAST_TEXT(260, 120);
constexpr int TAB_STOP = 3; // average characters, which are 12 units of dialogs

} // namespace

CEditProp::CEditProp(QWidget* parent, const std::string& caption, const std::string& text)
    : QDialog(parent), m_text(new QPlainTextEdit(this)), m_find(new CFindBar(this, *m_text)) {
    setWindowTitle(QStringLiteral("View property value"));
    auto* const label = new QLabel(FromNarrow(caption).replace(u'&', QStringLiteral("&&")), this);
    label->setBuddy(m_text);
    m_text->setMinimumSize(LEAST_TEXT);
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setTabChangesFocus(true);
    m_text->setWordWrapMode(QTextOption::WrapAnywhere); // there are no blanks, and looking for them takes its time
    m_text->setTabStopDistance(TAB_STOP * m_text->fontMetrics().averageCharWidth());
    m_text->setPlainText(FromNarrow(Reflow(text)));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    auto* const copy = buttons->addButton(QStringLiteral("&Copy"), QDialogButtonBox::ActionRole);
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, m_text, &QPlainTextEdit::copy);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_find);
    layout->addWidget(buttons);
    resize(SIZE);
    m_text->setFocus();
}

void CEditProp::keyPressEvent(QKeyEvent* event) {
    if (!m_find->Serve(*event))
        QDialog::keyPressEvent(event);
}
