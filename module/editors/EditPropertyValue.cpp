#include "module/editors/EditPropertyValue.h"

#include "api/bacnet/BacGeneral.h"
#include "module/editors/EditBitStringDlg.h"
#include "module/editors/EditListDlg.h"
#include "module/editors/MemberEditors.h"

#include <algorithm>
#include <iterator>

namespace {

// A value whose record is the member that the editor takes.
template <class Value, const auto& Editor>
bool EditRecord(QWidget* parent, CPropertyValue& value) {
    return Editor.edit(parent, value.GetPropName(), static_cast<Value&>(value).Value);
}

// A value that the editor takes whole.
template <class Value, const auto& Editor>
bool EditWhole(QWidget* parent, CPropertyValue& value) {
    return Editor.edit(parent, value.GetPropName(), static_cast<Value&>(value));
}

// A value whose numbers or bits have the names that its property gives them.
template <class Value, class Dialog>
bool EditNamed(QWidget* parent, CPropertyValue& value) {
    Dialog dialog(parent, CBacGeneral::GetEnumTypeId(value.GetPropId(), value.GetObjType()));
    return RunEditor(dialog, value.GetPropName(), static_cast<Value&>(value).Value);
}

// A number that is missing has no editor.
constexpr EditorEntry EDITORS[] = {
    {TYPE_BOOLEAN, &EditRecord<CPVBoolean, BOOLEAN_EDITOR>},
    {TYPE_UNSIGNED, &EditRecord<CPVUnsigned, UNSIGNED_EDITOR>},
    {TYPE_SIGNED, &EditRecord<CPVSigned, SIGNED_EDITOR>},
    {TYPE_REAL, &EditRecord<CPVReal, REAL_EDITOR>},
    {TYPE_DOUBLE, &EditRecord<CPVDouble, DOUBLE_EDITOR>},
    {TYPE_BIT_STRING, &EditNamed<CPVBitString, CEditBitStringDlg>},
    {TYPE_DATE, &EditRecord<CPVDate, DATE_EDITOR>},
    {TYPE_TIME, &EditRecord<CPVTime, TIME_EDITOR>},
    {TYPE_DATE_TIME, &EditRecord<CPVDateTime, DATE_TIME_EDITOR>},
    {TYPE_DATE_RANGE, &EditRecord<CPVDateRange, DATE_RANGE_EDITOR>},
    {TYPE_WEEK_N_DAY, &EditRecord<CPVWeekNDay, WEEK_N_DAY_EDITOR>},
};

static_assert(std::ranges::is_sorted(EDITORS, {}, &EditorEntry::type));

} // namespace

std::span<const EditorEntry> GetEditors() {
    return EDITORS;
}

bool EditPropertyValue(QWidget* parent, CPropertyValue* value) {
    if (!value)
        return false;
    if (value->IsCollection())
        return EditList(parent, static_cast<CPropertyValueList&>(*value));
    const auto entry = std::ranges::lower_bound(EDITORS, value->GetDataType(), {}, &EditorEntry::type);
    return entry != std::end(EDITORS) && entry->type == value->GetDataType() && entry->edit(parent, *value);
}
