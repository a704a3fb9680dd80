// The editors of simple values, by the record that they edit.
#include "module/editors/EditBitStringDlg.h"
#include "module/editors/EditBooleanDlg.h"
#include "module/editors/EditDateRangeDlg.h"
#include "module/editors/EditDateTimeDlg.h"
#include "module/editors/EditRealDlg.h"
#include "module/editors/EditSignedDlg.h"
#include "module/editors/EditUnsignedDlg.h"
#include "module/editors/EditWeekAndDayDlg.h"
#include "module/editors/MemberEditors.h"
#include "module/editors/NumberChecks.h"

#include "api/bacnet/BacGeneral.h"

namespace {

// ---- numbers

template <const auto& Hint>
bool EditUnsigned(QWidget* parent, const std::string& label, std::uint32_t& value) {
    CEditUnsignedDlg dialog(parent);
    dialog.SetHint(Hint);
    return RunEditor(dialog, label, value);
}

constexpr char SECONDS[] = "s";
constexpr char PERCENT[] = "%";

bool EditSingle(QWidget* parent, const std::string& label, float& value) {
    CEditRealDlg dialog(parent);
    dialog.IsDouble = false;
    double number = value;
    if (!RunEditor(dialog, label, number))
        return false;
    value = Narrowed(number, value);
    return true;
}

// ---- bit strings

template <ENUM_TYPE_ID Names>
bool EditBits(QWidget* parent, const std::string& label, BACSTAC_BIT_STRING& value) {
    CEditBitStringDlg dialog(parent, Names);
    return RunEditor(dialog, label, value);
}

template <ENUM_TYPE_ID Names>
constexpr MemberEditor<BACSTAC_BIT_STRING> BITS{PrintWith<&CBacGeneral::PrintBitString, Names>, &EditBits<Names>};

// ---- dates and times

template <class Half, Half BACSTAC_DATE_TIME::*Member, bool CEditDateTimeDlg::*Other>
bool EditHalf(QWidget* parent, const std::string& label, Half& value) {
    CEditDateTimeDlg dialog(parent);
    dialog.*Other = false;
    BACSTAC_DATE_TIME whole{};
    whole.*Member = value;
    if (!RunEditor(dialog, label, whole))
        return false;
    value = whole.*Member;
    return true;
}

} // namespace

const MemberEditor<std::uint8_t> BOOLEAN_EDITOR{PrintWith<&CBacGeneral::PrintBoolean>, EditWith<CEditBooleanDlg>};
const MemberEditor<std::uint32_t> UNSIGNED_EDITOR{PrintWith<&CBacGeneral::PrintUnsigned>, EditWith<CEditUnsignedDlg>};
const MemberEditor<std::uint32_t> SECONDS_EDITOR{PrintWith<&CBacGeneral::PrintUnsigned>, &EditUnsigned<SECONDS>};
const MemberEditor<std::uint32_t> PERCENT_EDITOR{PrintWith<&CBacGeneral::PrintUnsigned>, &EditUnsigned<PERCENT>};
const MemberEditor<std::int32_t> SIGNED_EDITOR{PrintWith<&CBacGeneral::PrintSigned>, EditWith<CEditSignedDlg>};
const MemberEditor<float> REAL_EDITOR{PrintWith<&CBacGeneral::PrintReal>, &EditSingle};
const MemberEditor<double> DOUBLE_EDITOR{PrintWith<&CBacGeneral::PrintReal>, EditWith<CEditRealDlg>};

const MemberEditor<BACSTAC_BIT_STRING> BIT_STRING_EDITOR = BITS<ENUM_NONE>;
const MemberEditor<BACSTAC_BIT_STRING> DAYS_EDITOR = BITS<ENUM_DAYS_OF_WEEK>;
const MemberEditor<BACSTAC_BIT_STRING> TRANSITIONS_EDITOR = BITS<ENUM_EVENT_TRANSITION_BITS>;

const MemberEditor<BACSTAC_DATE> DATE_EDITOR{
    PrintWith<&CBacGeneral::PrintDate>, &EditHalf<BACSTAC_DATE, &BACSTAC_DATE_TIME::Date, &CEditDateTimeDlg::HasTime>};
const MemberEditor<BACSTAC_TIME> TIME_EDITOR{
    PrintWith<&CBacGeneral::PrintTime>, &EditHalf<BACSTAC_TIME, &BACSTAC_DATE_TIME::Time, &CEditDateTimeDlg::HasDate>};
const MemberEditor<BACSTAC_DATE_TIME> DATE_TIME_EDITOR{PrintWith<&CBacGeneral::PrintDateTime>,
                                                       EditWith<CEditDateTimeDlg>};
const MemberEditor<BACSTAC_DATE_RANGE> DATE_RANGE_EDITOR{PrintWith<&CBacGeneral::PrintDateRange>,
                                                         EditWith<CEditDateRangeDlg>};
const MemberEditor<BACSTAC_WEEK_N_DAY> WEEK_N_DAY_EDITOR{PrintWith<&CBacGeneral::PrintWeekNDay>,
                                                         EditWith<CEditWeekAndDayDlg>};
