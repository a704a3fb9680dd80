#include "module/editors/QuantityForms.h"

#include "api/bacnet/Enums.h"
#include "module/editors/MemberEditors.h"

namespace {

using Scale = BACSTAC_SCALE;

constexpr FormAlternative SCALES[] = {
    Alternative<Scale, &Scale::Signed, SIGNED_EDITOR, [](Scale& value) { value.Signed = 0; }>("signed", TYPE_SIGNED,
                                                                                              "signed scale"),
    Alternative<Scale, &Scale::Real, REAL_EDITOR, [](Scale& value) { value.Real = 0; }>("real", TYPE_REAL,
                                                                                        "real scale"),
};

constexpr FormRow SCALE_ROWS[] = {
    Choice<Scale, &Scale::Choice>("&Type", "&Value", SCALES),
};

constexpr std::uint32_t FULL_LOAD = 100; // percent

using Shed = BACSTAC_SHED_LEVEL;

constexpr FormAlternative SHED_LEVELS[] = {
    Alternative<Shed, &Shed::Percent, PERCENT_EDITOR, [](Shed& value) { value.Percent = FULL_LOAD; }>("percent", 0,
                                                                                                      "percent"),
    Alternative<Shed, &Shed::Level, UNSIGNED_EDITOR, [](Shed& value) { value.Level = 0; }>("level", 1, "level"),
    Alternative<Shed, &Shed::Amount, REAL_EDITOR, [](Shed& value) { value.Amount = 0; }>("amount", 2, "amount"),
};

constexpr FormRow SHED_ROWS[] = {
    Choice<Shed, &Shed::Choice>("&Type", "&Value", SHED_LEVELS),
};

} // namespace

CEditScaleDlg::CEditScaleDlg(QWidget* parent) : CRecordForm(parent, {"Input scale", SCALE_ROWS}) {}

CEditShedLevelDlg::CEditShedLevelDlg(QWidget* parent) : CRecordForm(parent, {"Input shed-level", SHED_ROWS}) {}
