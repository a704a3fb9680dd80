#include "module/console/LogFileDialog.h"

#include "api/bacnet/BacGeneral.h"
#include "module/console/ModuleLock.h"
#include "module/widgets/SpinEdit.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr int DIGITS = 10;

constexpr const char* CHECK_LABELS[LOG_CHECK_COUNT] = {"Enable online log", "Limit online log file size",
                                                       "Enable historical log", "Limit historical log file by size ",
                                                       "Limit historical log file by sessions"};

constexpr struct {
    const char* group;
    LOG_CHECK check;
    const char* label;
    const char* unit;
    std::uint32_t high; // of the arrows, from 1
} LIMITS[LOG_LIMIT_COUNT] = {
    {"Limit by size", CHECK_ONLINE_SIZE, "Size limit", "Mb", 10},
    {"Limit by size", CHECK_HISTORICAL_SIZE, "Size limit", "Mb", 100},
    {"Limit by number of sessions", CHECK_SESSIONS, "Session limit", "Sessions", 1000},
};

constexpr const char* LEVEL_LABELS[LOG_LEVEL_COUNT] = {"&Trace", "&Normal", "&Info", "&Low info"};

QGroupBox* NewGroup(const char* title, QWidget* parent) {
    auto* const group = new QGroupBox(QString::fromLatin1(title), parent);
    new QVBoxLayout(group);
    return group;
}

} // namespace

CLogFileDialog::CLogFileDialog(QWidget* place) : CConsolePage(place), m_levels(new QButtonGroup(this)) {
    const auto addCheck = [this](LOG_CHECK check, QGroupBox* group) {
        m_checks[check] = new QCheckBox(QString::fromLatin1(CHECK_LABELS[check]), group);
        connect(m_checks[check], &QCheckBox::toggled, this, &CLogFileDialog::EnableControls);
        group->layout()->addWidget(m_checks[check]);
    };
    const auto addLimit = [&](LOG_LIMIT limit, QGroupBox* outer) {
        const auto& form = LIMITS[limit];
        QGroupBox* const group = NewGroup(form.group, outer);
        addCheck(form.check, group);
        auto* const label = new QLabel(QString::fromLatin1(form.label), group);
        m_limits[limit] = new CSpinEdit(group, 1, form.high, DIGITS);
        label->setBuddy(m_limits[limit]);
        m_limits[limit]->setAccessibleName(label->text());
        auto* const row = new QHBoxLayout;
        row->addWidget(label);
        row->addWidget(m_limits[limit]);
        row->addWidget(new QLabel(QString::fromLatin1(form.unit), group));
        row->addStretch(1);
        static_cast<QVBoxLayout*>(group->layout())->addLayout(row);
        outer->layout()->addWidget(group);
    };

    QGroupBox* const online = NewGroup("Online log file", this);
    addCheck(CHECK_ONLINE, online);
    addLimit(LIMIT_ONLINE_SIZE, online);
    QGroupBox* const historical = NewGroup("Historical log file", this);
    addCheck(CHECK_HISTORICAL, historical);
    addLimit(LIMIT_HISTORICAL_SIZE, historical);
    addLimit(LIMIT_SESSIONS, historical);
    QGroupBox* const levels = NewGroup("Information level", this);
    for (int level = 0; level < LOG_LEVEL_COUNT; ++level) {
        auto* const button = new QRadioButton(QString::fromLatin1(LEVEL_LABELS[level]), levels);
        m_levels->addButton(button, level);
        levels->layout()->addWidget(button);
    }
    static_cast<QVBoxLayout*>(online->layout())->addStretch(1);

    auto* const layout = new QGridLayout(this);
    layout->addWidget(online, 0, 0);
    layout->addWidget(historical, 0, 1);
    layout->addWidget(levels, 1, 0, 1, 2);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(2, 1);
    setFocusProxy(m_checks[CHECK_ONLINE]);
}

void CLogFileDialog::Load() {
    const CModuleLock lock;
    LogSettings& settings = allPropPages.log;
    SetFields(ShowLog(settings));
    settings.filter = FilterOfMask(settings.categoryMask);
    EnableControls();
}

bool CLogFileDialog::Save() {
    const LogPageFields fields = GetFields();
    const CModuleLock lock;
    TakeLog(fields, allPropPages.log);
    ApplyLog(allPropPages.log, CBacGeneral::Log());
    return true;
}

LogPageFields CLogFileDialog::GetFields() const {
    LogPageFields fields;
    for (int i = 0; i < LOG_CHECK_COUNT; ++i)
        fields.checks[i] = m_checks[i]->isChecked();
    for (int i = 0; i < LOG_LIMIT_COUNT; ++i)
        fields.limits[i] = m_limits[i]->GetText().toStdString();
    fields.level = m_levels->checkedId();
    return fields;
}

void CLogFileDialog::SetFields(const LogPageFields& fields) {
    for (int i = 0; i < LOG_CHECK_COUNT; ++i)
        m_checks[i]->setChecked(fields.checks[i]);
    for (int i = 0; i < LOG_LIMIT_COUNT; ++i)
        m_limits[i]->SetText(QString::fromStdString(fields.limits[i]));
    if (fields.level != NO_LOG_LEVEL)
        m_levels->button(fields.level)->setChecked(true);
}

void CLogFileDialog::EnableControls() {
    const LogPageEnabled enabled = EnabledFor(GetFields());
    for (int i = 0; i < LOG_CHECK_COUNT; ++i)
        m_checks[i]->setEnabled(enabled.checks[i]);
    for (int i = 0; i < LOG_LIMIT_COUNT; ++i)
        m_limits[i]->setEnabled(enabled.limits[i]);
}
