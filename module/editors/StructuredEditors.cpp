// The editors of what simple values are parts of, by the record that they edit.
#include "api/bacnet/BacGeneral.h"
#include "module/editors/EditAddressDlg.h"
#include "module/editors/EditAnyPrimitiveDlg.h"
#include "module/editors/EditDevObjPropRefDlg.h"
#include "module/editors/MemberEditors.h"
#include "module/editors/ReferenceForms.h"
#include "module/editors/ScheduleForms.h"

#include <type_traits>

namespace {

// ---- references: each kind has some of the parts of the largest one

template <class Reference>
concept ObjectId = std::is_same_v<Reference, BACSTAC_OBJECT_ID>;
template <class Reference>
concept WithObject = requires(Reference reference) {
    reference.ObjectId;
};
template <class Reference>
concept WithProperty = requires(Reference reference) {
    reference.Property;
};
template <class Reference>
concept WithDevice = requires(Reference reference) {
    reference.DeviceId;
};

template <class Reference>
constexpr ReferenceGroups GROUPS{WithDevice<Reference>, ObjectId<Reference> || WithObject<Reference>,
                                 WithProperty<Reference>};

template <class Reference>
auto& ObjectOf(Reference& reference) {
    if constexpr (ObjectId<std::remove_const_t<Reference>>)
        return reference;
    else
        return reference.ObjectId;
}

// The parts that both have; the shorter one says which.
template <class Shorter, class From, class To>
void CopyParts(const From& from, To& to) {
    if constexpr (GROUPS<Shorter>.object)
        ObjectOf(to) = ObjectOf(from);
    if constexpr (GROUPS<Shorter>.property) {
        to.Property = from.Property;
        to.ArrayIndex = from.ArrayIndex;
    }
    if constexpr (GROUPS<Shorter>.device) {
        to.DevicePresent = from.DevicePresent;
        to.DeviceId = from.DeviceId;
    }
}

template <class Reference>
bool EditReference(QWidget* parent, const std::string& label, Reference& reference) {
    CEditDevObjPropRefDlg dialog(parent);
    dialog.Groups = GROUPS<Reference>;
    dialog.SetLabel(label);
    CopyParts<Reference>(reference, dialog.Value);
    if (!dialog.Run())
        return false;
    CopyParts<Reference>(dialog.Value, reference);
    return true;
}

// ---- texts of what has no print function of its own

std::string PrintDevObjRef(const BACSTAC_DEV_OBJ_REF& reference) {
    CPVDevObjRef value;
    value.Value = reference;
    return value.ToText(BACSTAC_NO_INDEX);
}

std::string PrintAnyPrimitive(const CPVAnyPrimitive& value) {
    return value.ToText(BACSTAC_NO_INDEX);
}

} // namespace

const MemberEditor<BACSTAC_OBJECT_ID> OBJECT_ID_EDITOR{PrintWith<&CBacGeneral::PrintObjectID>, EditReference};
const MemberEditor<BACSTAC_PROPERTY_REF> PROPERTY_REF_EDITOR{PrintWith<&CBacGeneral::PrintPropReference>,
                                                             EditReference};
const MemberEditor<BACSTAC_OBJ_PROP_REF> OBJ_PROP_REF_EDITOR{PrintWith<&CBacGeneral::PrintObjPropReference>,
                                                             EditReference};
const MemberEditor<BACSTAC_DEV_OBJ_REF> DEV_OBJ_REF_EDITOR{PrintDevObjRef, EditReference};
const MemberEditor<BACSTAC_DEV_OBJ_PROP_REF> DEV_OBJ_PROP_REF_EDITOR{PrintWith<&CBacGeneral::PrintDevObjPropReference>,
                                                                     EditReference};
const MemberEditor<BACSTAC_ADDRESS> ADDRESS_EDITOR{PrintWith<&CBacGeneral::PrintAddress>, EditWith<CEditAddressDlg>};
const MemberEditor<BACSTAC_RECIPIENT> RECIPIENT_EDITOR{PrintWith<&CBacGeneral::PrintRecipient>,
                                                       EditWith<CEditRecipientDlg>};
const MemberEditor<BACSTAC_CALENDAR_ENTRY> CALENDAR_ENTRY_EDITOR{PrintWith<&CBacGeneral::PrintCalendarEntry>,
                                                                 EditWith<CEditCalendarEntryDlg>};
const MemberEditor<CPVAnyPrimitive> ANY_PRIMITIVE_EDITOR{PrintAnyPrimitive, EditWith<CEditAnyPrimitiveDlg>};
