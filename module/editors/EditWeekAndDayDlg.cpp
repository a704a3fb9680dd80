#include "module/editors/EditWeekAndDayDlg.h"

#include <QGridLayout>
#include <QVBoxLayout>

namespace {

constexpr ListedField<BACSTAC_WEEK_N_DAY, std::uint32_t> FIELDS[] = {
    {"&Month", &MONTHS, &BACSTAC_WEEK_N_DAY::Month},
    {"&Week", &WEEKS_OF_MONTH, &BACSTAC_WEEK_N_DAY::Week},
    {"&Day of week", &DAYS_OF_WEEK, &BACSTAC_WEEK_N_DAY::Day},
};

} // namespace

CEditWeekAndDayDlg::CEditWeekAndDayDlg(QWidget* parent)
    : CEditorDlg(parent, "Input week-n-day"), m_grid(new QGridLayout), m_fields(this, *m_grid, FIELDS) {
    GetContent().addLayout(m_grid);
    GetContent().addStretch(1);
}

bool CEditWeekAndDayDlg::Store() {
    m_fields.Store(Value);
    return true;
}
