#include "module/editors/EditEPOutOfRange.h"

#include "module/editors/MemberEditors.h"
#include "module/editors/Saturate.h"

namespace {

constexpr const char* TITLE = "Input ep-out-of-range";

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

template <class Set, const auto& LimitEditor, const auto& BandEditor>
constexpr FormRow ROWS[] = {
    Field<Set, &Set::TimeDelay, SECONDS_EDITOR>("&Time delay", "time-delay"),
    Field<Set, &Set::LowLimit, LimitEditor>("&Low limit", "low-limit"),
    Field<Set, &Set::HighLimit, LimitEditor>("&High limit", "high-limit"),
    Field<Set, &Set::DeadBand, BandEditor>("&Dead band", "dead-band"),
};

FormSpec SpecOf(unsigned eventType) {
    switch (eventType) {
    case 14:
        return {TITLE, ROWS<BACSTAC_EP_DOUBLE_OUT_OF_RANGE, DOUBLE_EDITOR, DOUBLE_EDITOR>};
    case 15:
        return {TITLE, ROWS<BACSTAC_EP_SIGNED_OUT_OF_RANGE, SIGNED_AS_REAL_EDITOR, UNSIGNED_AS_REAL_EDITOR>};
    case 16:
        return {TITLE, ROWS<BACSTAC_EP_UNSIGNED_OUT_OF_RANGE, UNSIGNED_AS_REAL_EDITOR, UNSIGNED_AS_REAL_EDITOR>};
    default:
        return {TITLE, ROWS<BACSTAC_EP_OUT_OF_RANGE, REAL_EDITOR, REAL_EDITOR>};
    }
}

} // namespace

CEditEPOutOfRange::CEditEPOutOfRange(QWidget* parent, unsigned eventType)
    : CFormDlg(parent, SpecOf(eventType), Set(eventType)) {}

void* CEditEPOutOfRange::Set(unsigned eventType) {
    switch (eventType) {
    case 14:
        return &DoubleValue;
    case 15:
        return &SignedValue;
    case 16:
        return &UnsignedValue;
    default:
        return &Value;
    }
}
