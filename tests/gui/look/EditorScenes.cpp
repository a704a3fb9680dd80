#include "tests/gui/look/EditorScenes.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/PropertyValues.h"
#include "module/editors/EditPriorityDlg.h"
#include "module/editors/EditProp.h"
#include "module/editors/EditPropertyValue.h"
#include "module/editors/MemberEditors.h"
#include "tests/gui/ConsoleFixture.h"

#include <QTest>

#include <memory>

namespace {

std::unique_ptr<CPropertyValue> NewValue(BACSTAC_OBJECT_TYPE object, BACSTAC_PROPERTY_ID property,
                                         BACSTAC_DATA_TYPE type, int count) {
    return std::unique_ptr<CPropertyValue>(CPropertyValue::CreateValue(object, property, type, count));
}

void ShowEditor(CPropertyValue& value, const Look& look, const std::string& name) {
    ShowModal([&] { EditPropertyValue(ConsoleWindow(), &value); }, look, "editor " + name);
}

} // namespace

void ShowEditors(const Look& look) {
    constexpr BACSTAC_PROPERTY_ID UNITS = 117; // enumerated
    for (const EditorEntry& editor : GetEditors()) {
        const auto value = NewValue(OBJ_ANALOG_INPUT, UNITS, editor.type, 1);
        ShowEditor(*value, look, std::to_string(editor.type) + " " + value->GetTypeName());
    }
}

void ShowMemberEditors(const Look& look) {
    BACSTAC_ADDRESS address{1, 0, 2001, {10, 0, 0, 7, 186, 192, 0}, 6};
    ShowModal([&] { ADDRESS_EDITOR.edit(ConsoleWindow(), "address", address); }, look, "editor address");
    std::uint32_t delay = 60;
    ShowModal([&] { SECONDS_EDITOR.edit(ConsoleWindow(), "time-delay", delay); }, look, "editor seconds");
}

void ShowListEditors(const Look& look) {
    constexpr BACSTAC_OBJECT_TYPE OBJ_SCHEDULE = 17;
    constexpr BACSTAC_PROPERTY_ID WEEKLY_SCHEDULE = 123;
    const auto week = NewValue(OBJ_SCHEDULE, WEEKLY_SCHEDULE, TYPE_NONE, -1);
    ShowEditor(*week, look, "list of fixed size");
    const auto list = NewValue(OBJ_ANALOG_INPUT, PROP_STATUS_FLAGS, TYPE_DEV_OBJ_PROP_REF, 0);
    ShowEditor(*list, look, "list that is empty");
}

void ShowSimpleEditors(const Look& look) {
    CPVBitString flags;
    flags.SetPropId(OBJ_ANALOG_INPUT, PROP_STATUS_FLAGS);
    CBacGeneral::SetBitStringBit(flags.Value, 2, true);
    ShowEditor(flags, look, "status flags");
    CPVDateTime christmas;
    christmas.Value = {{2026, 0, 12, 24, 4}, {18, 30, 0, BACSTAC_ANY_TIME}};
    ShowEditor(christmas, look, "christmas");
    CPVOctetString key;
    key.Value.assign(24, 0xAB);
    ShowEditor(key, look, "key");
    CPVString text;
    text.Value = "Supply fan, air handling unit 3";
    ShowEditor(text, look, "text");
    ShowModal([] { CEditPriorityDlg(ConsoleWindow()).Run(); }, look, "priority of a write");
}

void ShowViewer(const Look& look) {
    const std::string schedule = "{{(08:00:00.00, 21.5), (18:00:00.00, 16.0)}, {(09:00:00.00, 20.0)}, {}}";
    CEditProp viewer(ConsoleWindow(), "weekly-schedule", schedule);
    viewer.show();
    look(viewer, "viewer");
    QTest::keyClick(viewer.focusWidget(), Qt::Key_F, Qt::ControlModifier);
    TypeText(*viewer.focusWidget(), "21.6");
    look(viewer, "viewer search");
}
