#include "module/editors/EditPropertyValue.h"

#include "module/editors/EditListDlg.h"
#include "module/editors/MemberEditors.h"

#include <algorithm>
#include <array>

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

// A number that is missing has no editor.
constexpr std::array<EditorEntry, 0> EDITORS{};

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
    return entry != EDITORS.end() && entry->type == value->GetDataType() && entry->edit(parent, *value);
}
