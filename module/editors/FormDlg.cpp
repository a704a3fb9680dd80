#include "module/editors/FormDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/EditListDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace {

constexpr int TEXT_WIDTH = 220; // pixels at the default font

} // namespace

CFormDlg::CFormDlg(QWidget* parent, const FormSpec& spec, void* record)
    : CEditorDlg(parent, spec.title), m_record(record), m_grid(new QGridLayout) {
    GetContent().addLayout(m_grid);
    GetContent().addStretch(1);
    AddRows(spec.rows);
}

void CFormDlg::AddRows(std::span<const FormRow> rows) {
    for (const FormRow& row : rows)
        std::visit([this](const auto& kind) { Add(kind); }, row);
}

void CFormDlg::Redraw() {
    for (const auto& redraw : m_redraws)
        redraw();
}

void CFormDlg::AddRow(const char* caption, QWidget& control) {
    auto* const label = new QLabel(QString::fromLatin1(caption), this);
    label->setBuddy(&control);
    const int row = m_grid->rowCount();
    m_grid->addWidget(label, row, 0);
    m_grid->addWidget(&control, row, 1, 1, 2);
}

void CFormDlg::AddControl(QWidget& control) {
    m_grid->addWidget(&control, m_grid->rowCount(), 1, 1, 2);
}

QPushButton& CFormDlg::AddText(const char* caption, std::function<std::string()> print, std::function<bool()> edit) {
    auto* const label = new QLabel(QString::fromLatin1(caption), this);
    auto* const text = new QLineEdit(this);
    auto* const button = new QPushButton(QStringLiteral("..."), this);
    text->setReadOnly(true);
    text->setFocusPolicy(Qt::ClickFocus);
    text->setMinimumWidth(TEXT_WIDTH);
    const QString name = label->text().remove(u'&');
    text->setAccessibleName(name);
    button->setAutoDefault(false);
    button->setAccessibleName(name);
    label->setBuddy(button);
    const int row = m_grid->rowCount();
    m_grid->addWidget(label, row, 0);
    m_grid->addWidget(text, row, 1);
    m_grid->addWidget(button, row, 2);
    OnRedraw([text, draw = std::move(print)] {
        text->setText(FromNarrow(draw()));
        text->setCursorPosition(0);
    });
    connect(button, &QPushButton::clicked, this, [this, change = std::move(edit)] {
        if (change())
            Redraw();
    });
    return *button;
}

void CFormDlg::Add(const FormField& field) {
    QPushButton& button = AddText(
        field.caption, [this, &field] { return field.print(m_record); },
        [this, &field] { return field.edit(this, field.label, m_record); });
    if (field.isEnabled)
        OnRedraw([this, &field, &button] { button.setEnabled(field.isEnabled(m_record)); });
}

void CFormDlg::Add(const FormFlag& flag) {
    auto* const box = new QCheckBox(QString::fromLatin1(flag.caption), this);
    AddControl(*box);
    OnRedraw([this, &flag, box] { box->setChecked(flag.get(m_record)); });
    connect(box, &QCheckBox::clicked, this, [this, &flag](bool isOn) {
        flag.set(m_record, isOn);
        Redraw();
    });
}

void CFormDlg::Add(const FormList& list) {
    auto* const button = new QPushButton(QString::fromLatin1(list.caption), this);
    button->setAutoDefault(false);
    AddControl(*button);
    connect(button, &QPushButton::clicked, this, [this, &list] { EditList(this, list.list(m_record)); });
}

const FormAlternative* CFormDlg::Chosen(const FormChoice& choice) const {
    const auto found = std::ranges::find(choice.alternatives, choice.get(m_record), &FormAlternative::number);
    return found == choice.alternatives.end() ? nullptr : &*found;
}

void CFormDlg::Add(const FormChoice& choice) {
    auto* const combo = new QComboBox(this);
    for (const FormAlternative& alternative : choice.alternatives)
        combo->addItem(QString::fromLatin1(alternative.name));
    AddRow(choice.caption, *combo);
    OnRedraw([this, &choice, combo] {
        const QSignalBlocker quiet(combo);
        const FormAlternative* const chosen = Chosen(choice);
        combo->setCurrentIndex(chosen ? static_cast<int>(chosen - choice.alternatives.data()) : -1);
    });
    connect(combo, &QComboBox::currentIndexChanged, this, [this, &choice](int index) {
        const FormAlternative& alternative = choice.alternatives[static_cast<std::size_t>(index)];
        choice.set(m_record, alternative.number);
        alternative.reset(m_record);
        Redraw();
    });
    AddText(
        choice.valueCaption,
        [this, &choice] {
            const FormAlternative* const chosen = Chosen(choice);
            return chosen ? chosen->value.print(m_record) : std::string();
        },
        [this, &choice] {
            const FormAlternative* const chosen = Chosen(choice);
            return chosen && chosen->value.edit(this, chosen->value.label, m_record);
        });
}
