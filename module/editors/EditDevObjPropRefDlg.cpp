#include "module/editors/EditDevObjPropRefDlg.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/PropertyValues.h"
#include "base/NumberText.h"
#include "module/console/NarrowText.h"
#include "module/widgets/LimitEdit.h"
#include "module/widgets/NameCombo.h"

#include <QGridLayout>
#include <QLabel>

namespace {

constexpr int TYPE_DIGITS = 4;
constexpr int INSTANCE_DIGITS = 7;
constexpr int PROPERTY_DIGITS = 7;
constexpr int INDEX_DIGITS = 10;
constexpr int NUMBER_WIDTH = 80; // pixels at the default font

void AddGroup(QGridLayout& grid, const char* caption, QWidget& field, QWidget* second) {
    auto* const label = new QLabel(QString::fromLatin1(caption), field.parentWidget());
    label->setBuddy(&field);
    const int row = grid.rowCount();
    grid.addWidget(label, row, 0);
    grid.addWidget(&field, row, 1);
    if (second)
        grid.addWidget(second, row, 2);
}

void Add(CNameCombo& combo, const char* name, std::uint32_t number) {
    combo.addItem(FromNarrow(name), number);
}

// The number by its name, if that is listed.
void Show(CNameCombo& combo, const std::string& number) {
    const auto listed = ParseU32(number);
    if (const int item = listed ? combo.findData(*listed) : CNameCombo::NO_ITEM; item != CNameCombo::NO_ITEM)
        combo.SetItem(item);
    else
        combo.SetText(FromNarrow(number));
}

std::string NumberOf(const CNameCombo& combo) {
    const int item = combo.GetItem();
    return item == CNameCombo::NO_ITEM ? ToNarrow(combo.GetText()) : std::to_string(combo.itemData(item).toUInt());
}

void Enable(bool isEnabled, std::initializer_list<QWidget*> fields) {
    for (QWidget* const field : fields)
        field->setEnabled(isEnabled);
}

} // namespace

CEditDevObjPropRefDlg::CEditDevObjPropRefDlg(QWidget* parent)
    : CEditorDlg(parent, "Input device-object-property"), m_type(new CNameCombo(this, TYPE_DIGITS)),
      m_instance(new CLimitEdit(this, INSTANCE_DIGITS)), m_property(new CNameCombo(this, PROPERTY_DIGITS)),
      m_index(new CLimitEdit(this, INDEX_DIGITS)), m_device(new CLimitEdit(this, INSTANCE_DIGITS)) {
    InitRecord(TYPE_DEV_OBJ_PROP_REF, &Value);
    for (QWidget* const number : {m_instance, m_index, m_device})
        number->setMinimumWidth(NUMBER_WIDTH);
    m_instance->setAccessibleName(QStringLiteral("Object instance"));
    m_index->setAccessibleName(QStringLiteral("Array index"));
    auto* const grid = new QGridLayout;
    AddGroup(*grid, "&Object type && instance", *m_type, m_instance);
    AddGroup(*grid, "&Property id and index (optional)", *m_property, m_index);
    AddGroup(*grid, "&Device (optional)", *m_device, nullptr);
    GetContent().addLayout(grid);
    GetContent().addStretch(1);
}

// Groups that are off stay empty.
void CEditDevObjPropRefDlg::Load() {
    const ReferenceTexts texts = ShowReference(Value);
    Enable(Groups.object, {m_type, m_instance});
    Enable(Groups.property, {m_property, m_index});
    Enable(Groups.device, {m_device});
    if (Groups.object) {
        for (BACSTAC_OBJECT_TYPE type = 0; type <= LAST_LISTED_TYPE; ++type)
            Add(*m_type, CBACnetDir::GetStdObjTypeName(type), type);
        Show(*m_type, texts.objectType);
        m_instance->SetWholeText(FromNarrow(texts.instance));
    }
    if (Groups.property) {
        ListProperties(Groups.object ? Value.ObjectId.Type : OBJ_NO_TYPE);
        Show(*m_property, texts.property);
        m_index->SetWholeText(FromNarrow(texts.arrayIndex));
        connect(m_type, &QComboBox::currentIndexChanged, this, &CEditDevObjPropRefDlg::OnTypeChanged);
        connect(m_type->lineEdit(), &QLineEdit::textEdited, this, &CEditDevObjPropRefDlg::OnTypeChanged);
    }
    if (Groups.device)
        m_device->SetWholeText(FromNarrow(texts.device));
}

void CEditDevObjPropRefDlg::ListProperties(BACSTAC_OBJECT_TYPE type) {
    m_property->clear();
    for (const BACSTAC_PROPERTY_ID property : PropertiesOf(type))
        Add(*m_property, CBACnetDir::GetStdPropName(property), property);
}

// The property stays, by its name or, where the type does not have it, by its number.
void CEditDevObjPropRefDlg::OnTypeChanged() {
    const auto type = ParseU32(NumberOf(*m_type));
    if (!type)
        return;
    const std::string property = NumberOf(*m_property);
    ListProperties(*type);
    Show(*m_property, property);
}

ReferenceTexts CEditDevObjPropRefDlg::Texts() const {
    return {ToNarrow(m_device->text()), NumberOf(*m_type), ToNarrow(m_instance->text()), NumberOf(*m_property),
            ToNarrow(m_index->text())};
}

QWidget& CEditDevObjPropRefDlg::FieldOf(ReferenceField field) const {
    switch (field) {
    case ReferenceField::device:
        return *m_device;
    case ReferenceField::objectType:
        return *m_type;
    case ReferenceField::instance:
        return *m_instance;
    case ReferenceField::property:
        return *m_property;
    case ReferenceField::arrayIndex:
        return *m_index;
    }
    return *m_type;
}

bool CEditDevObjPropRefDlg::Store() {
    const auto fault = StoreReference(Texts(), Groups, Value);
    return !fault || Refuse(fault->message, FieldOf(fault->field));
}
