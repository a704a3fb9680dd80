// The editors of simple values, by the record that they edit.
#include "module/editors/EditBitStringDlg.h"
#include "module/editors/EditBooleanDlg.h"
#include "module/editors/EditClientCOVDlg.h"
#include "module/editors/EditDateRangeDlg.h"
#include "module/editors/EditDateTimeDlg.h"
#include "module/editors/EditOctetStringDlg.h"
#include "module/editors/EditRealDlg.h"
#include "module/editors/EditSignedDlg.h"
#include "module/editors/EditStringDlg.h"
#include "module/editors/EditUnsignedDlg.h"
#include "module/editors/EditWeekAndDayDlg.h"
#include "module/editors/MemberEditors.h"
#include "module/editors/NumberChecks.h"

#include "api/bacnet/BacGeneral.h"

namespace {

constexpr unsigned TEXT_SIZE = 128; // with the NUL

// print as the functions of CBacGeneral: into a buffer, the length as the result.
template <class Print>
std::string Printed(Print print) {
    char text[TEXT_SIZE];
    return {text, static_cast<std::size_t>(print(text, TEXT_SIZE))};
}

// The same for records.
template <class Record, int (*Print)(char*, unsigned, Record const&)>
std::string PrintRecord(const Record& value) {
    return Printed([&](char* text, unsigned size) { return Print(text, size, value); });
}

template <class Dialog, class Member>
bool EditIn(QWidget* parent, const std::string& label, Member& member) {
    Dialog dialog(parent);
    return RunEditor(dialog, label, member);
}

// ---- numbers

std::string PrintBoolean(const std::uint8_t& value) {
    return Printed([&](char* text, unsigned size) { return CBacGeneral::PrintBoolean(text, size, value != 0); });
}

std::string PrintUnsigned(const std::uint32_t& value) {
    return Printed([&](char* text, unsigned size) { return CBacGeneral::PrintUnsigned(text, size, value); });
}

template <const auto& Hint>
bool EditUnsigned(QWidget* parent, const std::string& label, std::uint32_t& value) {
    CEditUnsignedDlg dialog(parent);
    dialog.SetHint(Hint);
    return RunEditor(dialog, label, value);
}

constexpr char SECONDS[] = "s";
constexpr char PERCENT[] = "%";

std::string PrintSigned(const std::int32_t& value) {
    return Printed([&](char* text, unsigned size) { return CBacGeneral::PrintSigned(text, size, value); });
}

template <class Real>
std::string PrintReal(const Real& value) {
    return Printed([&](char* text, unsigned size) { return CBacGeneral::PrintReal(text, size, value); });
}

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
std::string PrintBits(const BACSTAC_BIT_STRING& value) {
    return Printed([&](char* text, unsigned size) { return CBacGeneral::PrintBitString(text, size, value, Names); });
}

template <ENUM_TYPE_ID Names>
bool EditBits(QWidget* parent, const std::string& label, BACSTAC_BIT_STRING& value) {
    CEditBitStringDlg dialog(parent, Names);
    return RunEditor(dialog, label, value);
}

template <ENUM_TYPE_ID Names>
constexpr MemberEditor<BACSTAC_BIT_STRING> BITS{&PrintBits<Names>, &EditBits<Names>};

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

// ---- what has no print function of its own

// Cut to the size, at a character's end.
std::string PrintValue(const CPropertyValue& value) {
    std::string text = value.ToText(BACSTAC_NO_INDEX);
    if (text.size() < TEXT_SIZE)
        return text;
    const auto isWithin = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    std::size_t end = TEXT_SIZE - 1;
    while (end != 0 && isWithin(end))
        --end;
    text.resize(end);
    return text;
}

template <class Value>
std::string PrintWhole(const Value& value) {
    return PrintValue(value);
}

std::string PrintClientCOV(const BACSTAC_CLIENT_COV& value) {
    CPVClientCOV whole;
    whole.Value = value;
    return PrintValue(whole);
}

bool EditString(QWidget* parent, const std::string& label, CPVString& value) {
    return EditIn<CEditStringDlg>(parent, label, value.Value);
}

} // namespace

const MemberEditor<std::uint8_t> BOOLEAN_EDITOR{&PrintBoolean, &EditIn<CEditBooleanDlg>};
const MemberEditor<std::uint32_t> UNSIGNED_EDITOR{&PrintUnsigned, &EditIn<CEditUnsignedDlg>};
const MemberEditor<std::uint32_t> SECONDS_EDITOR{&PrintUnsigned, &EditUnsigned<SECONDS>};
const MemberEditor<std::uint32_t> PERCENT_EDITOR{&PrintUnsigned, &EditUnsigned<PERCENT>};
const MemberEditor<std::int32_t> SIGNED_EDITOR{&PrintSigned, &EditIn<CEditSignedDlg>};
const MemberEditor<float> REAL_EDITOR{&PrintReal, &EditSingle};
const MemberEditor<double> DOUBLE_EDITOR{&PrintReal, &EditIn<CEditRealDlg>};

const MemberEditor<BACSTAC_BIT_STRING> BIT_STRING_EDITOR = BITS<ENUM_NONE>;
const MemberEditor<BACSTAC_BIT_STRING> DAYS_EDITOR = BITS<ENUM_DAYS_OF_WEEK>;
const MemberEditor<BACSTAC_BIT_STRING> TRANSITIONS_EDITOR = BITS<ENUM_EVENT_TRANSITION_BITS>;

const MemberEditor<BACSTAC_DATE> DATE_EDITOR{
    &PrintRecord<BACSTAC_DATE, &CBacGeneral::PrintDate>,
    &EditHalf<BACSTAC_DATE, &BACSTAC_DATE_TIME::Date, &CEditDateTimeDlg::HasTime>};
const MemberEditor<BACSTAC_TIME> TIME_EDITOR{
    &PrintRecord<BACSTAC_TIME, &CBacGeneral::PrintTime>,
    &EditHalf<BACSTAC_TIME, &BACSTAC_DATE_TIME::Time, &CEditDateTimeDlg::HasDate>};
const MemberEditor<BACSTAC_DATE_TIME> DATE_TIME_EDITOR{&PrintRecord<BACSTAC_DATE_TIME, &CBacGeneral::PrintDateTime>,
                                                       &EditIn<CEditDateTimeDlg>};
const MemberEditor<BACSTAC_DATE_RANGE> DATE_RANGE_EDITOR{&PrintRecord<BACSTAC_DATE_RANGE, &CBacGeneral::PrintDateRange>,
                                                         &EditIn<CEditDateRangeDlg>};
const MemberEditor<BACSTAC_WEEK_N_DAY> WEEK_N_DAY_EDITOR{&PrintRecord<BACSTAC_WEEK_N_DAY, &CBacGeneral::PrintWeekNDay>,
                                                         &EditIn<CEditWeekAndDayDlg>};

const MemberEditor<BACSTAC_CLIENT_COV> CLIENT_COV_EDITOR{&PrintClientCOV, &EditIn<CEditClientCOVDlg>};
const MemberEditor<CPVOctetString> OCTET_STRING_EDITOR{&PrintWhole, &EditIn<CEditOctetStringDlg>};
const MemberEditor<CPVString> STRING_EDITOR{&PrintWhole, &EditString};
