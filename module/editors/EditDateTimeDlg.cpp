#include "module/editors/EditDateTimeDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/LimitEdit.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QVBoxLayout>

namespace {

constexpr ListedField<BACSTAC_DATE, std::uint32_t> DATE_FIELDS[] = {
    {"Day of &week", &DAYS_OF_WEEK, &BACSTAC_DATE::Weekday},
    {"&Day", &DAYS_OF_MONTH, &BACSTAC_DATE::Day},
    {"&Month", &MONTHS, &BACSTAC_DATE::Month},
};
constexpr ListedField<BACSTAC_TIME, std::uint8_t> TIME_FIELDS[] = {
    {"&Hour", &HOURS, &BACSTAC_TIME::Hour},
    {"Mi&n.", &SIXTIETHS, &BACSTAC_TIME::Minute},
    {"&Sec.", &SIXTIETHS, &BACSTAC_TIME::Second},
    {"H&und.", &HUNDREDTHS, &BACSTAC_TIME::Hundredths},
};
constexpr int YEAR_DIGITS = 4;

} // namespace

CEditDateTimeDlg::CEditDateTimeDlg(QWidget* parent)
    : CEditorDlg(parent, "Input date-time"), m_dateGroup(NewGroup("Date")),
      m_date(m_dateGroup.box, *m_dateGroup.grid, DATE_FIELDS), m_year(new CLimitEdit(m_dateGroup.box, YEAR_DIGITS)),
      m_timeGroup(NewGroup("Time")), m_time(m_timeGroup.box, *m_timeGroup.grid, TIME_FIELDS) {
    m_year->setFixedWidth(m_year->fontMetrics().horizontalAdvance(QStringLiteral("0000000")));
    AddColumn(*m_dateGroup.grid, "&Year", *m_year);
    for (QGridLayout* const grid : {m_dateGroup.grid, m_timeGroup.grid})
        grid->setColumnStretch(grid->columnCount(), 1);
    GetContent().addStretch(1);
}

CEditDateTimeDlg::Group CEditDateTimeDlg::NewGroup(const char* title) {
    auto* const box = new QGroupBox(QString::fromLatin1(title), this);
    GetContent().addWidget(box);
    return {box, new QGridLayout(box)};
}

void CEditDateTimeDlg::Load() {
    m_dateGroup.box->setEnabled(HasDate);
    m_timeGroup.box->setEnabled(HasTime);
    if (HasDate) {
        m_date.Load(Value.Date);
        m_year->SetWholeText(FromNarrow(FormatYear(Value.Date.Year)));
    }
    if (HasTime)
        m_time.Load(Value.Time);
}

bool CEditDateTimeDlg::Store() {
    if (HasDate) {
        const auto year = CheckYear(ToNarrow(m_year->text()));
        if (year.message)
            return Refuse(year.message, *m_year);
        Value.Date.Year = year.value;
        m_date.Store(Value.Date);
    }
    if (HasTime)
        m_time.Store(Value.Time);
    return true;
}
