#include "module/editors/EditEPOutOfRange.h"

#include "module/editors/MemberEditors.h"
#include "module/editors/Saturate.h"

namespace {

// ---- integers as real numbers: fractions are cut off, and what is too large is the largest

template <class Number>
std::string PrintAsReal(const Number& value) {
    return DOUBLE_EDITOR.print(value);
}

template <class Number>
bool EditAsReal(QWidget* parent, const std::string& label, Number& value) {
    double number = value;
    if (!DOUBLE_EDITOR.edit(parent, label, number))
        return false;
    value = Saturate<Number>(number);
    return true;
}

constexpr MemberEditor<std::int32_t> SIGNED_AS_REAL_EDITOR{PrintAsReal, EditAsReal};
constexpr MemberEditor<std::uint32_t> UNSIGNED_AS_REAL_EDITOR{PrintAsReal, EditAsReal};

// ---- the sets

template <auto Set, auto Member>
constexpr auto IN_SET = [](OutOfRangeSets& sets) -> auto& {
    return sets.*Set.*Member;
};

template <class Record, Record OutOfRangeSets::*Set, const auto& LimitEditor, const auto& BandEditor>
constexpr FormRow ROWS[] = {
    Field<OutOfRangeSets, IN_SET<Set, &Record::TimeDelay>, SECONDS_EDITOR>("&Time delay", "time-delay"),
    Field<OutOfRangeSets, IN_SET<Set, &Record::LowLimit>, LimitEditor>("&Low limit", "low-limit"),
    Field<OutOfRangeSets, IN_SET<Set, &Record::HighLimit>, LimitEditor>("&High limit", "high-limit"),
    Field<OutOfRangeSets, IN_SET<Set, &Record::DeadBand>, BandEditor>("&Dead band", "dead-band"),
};

std::span<const FormRow> RowsOf(unsigned eventType) {
    using Sets = OutOfRangeSets;
    switch (eventType) {
    case 14:
        return ROWS<BACSTAC_EP_DOUBLE_OUT_OF_RANGE, &Sets::Double, DOUBLE_EDITOR, DOUBLE_EDITOR>;
    case 15:
        return ROWS<BACSTAC_EP_SIGNED_OUT_OF_RANGE, &Sets::Signed, SIGNED_AS_REAL_EDITOR, UNSIGNED_AS_REAL_EDITOR>;
    case 16:
        return ROWS<BACSTAC_EP_UNSIGNED_OUT_OF_RANGE, &Sets::Unsigned, UNSIGNED_AS_REAL_EDITOR,
                    UNSIGNED_AS_REAL_EDITOR>;
    default:
        return ROWS<BACSTAC_EP_OUT_OF_RANGE, &Sets::Real, REAL_EDITOR, REAL_EDITOR>;
    }
}

} // namespace

CEditEPOutOfRange::CEditEPOutOfRange(QWidget* parent, unsigned eventType)
    : CRecordForm(parent, {"Input ep-out-of-range", RowsOf(eventType)}) {}
