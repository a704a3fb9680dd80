#include "module/editors/EditDateRangeDlg.h"

#include "module/editors/MemberEditors.h"

namespace {

constexpr FormRow ROWS[] = {
    Field<BACSTAC_DATE_RANGE, &BACSTAC_DATE_RANGE::Start, DATE_EDITOR>("&Start date", "start-date"),
    Field<BACSTAC_DATE_RANGE, &BACSTAC_DATE_RANGE::End, DATE_EDITOR>("&End date", "end-date"),
};
constexpr FormSpec SPEC{"Input date-range", ROWS};

} // namespace

CEditDateRangeDlg::CEditDateRangeDlg(QWidget* parent) : CRecordForm(parent, SPEC) {}
