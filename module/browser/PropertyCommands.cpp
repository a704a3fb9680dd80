#include "module/browser/PropertyCommands.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Requests.h"
#include "module/browser/AsyncCallBack.h"
#include "module/browser/ContentsRoom.h"
#include "module/console/Operator.h"

#include <algorithm>

namespace {

constexpr int AS_STANDARD = -1; // one value, a list or an array, as the standard defines the property
constexpr int ONE_ELEMENT = 1;

// The contents as a value of the type, TYPE_NONE for the standard's; null when they are none.
std::unique_ptr<CPropertyValue> ValueOf(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                                        BACSTAC_PROPERTY_ID property, BACSTAC_DATA_TYPE type, int count) {
    std::unique_ptr<CPropertyValue> value(CPropertyValue::CreateValue(objectType, property, type, count));
    return value && value->ReadFrom(contents) ? std::move(value) : nullptr;
}

// As the device gave it.
std::unique_ptr<CPropertyValue> ValueAsRead(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                                            BACSTAC_PROPERTY_ID property) {
    return ValueOf(contents, objectType, property, contents.DataType, contents.ElementCount == 1 ? ONE_ELEMENT : 0);
}

} // namespace

void CPropertyCommands::Report(const char* words, BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
    ReportFailure(m_services.op, words, status, &error, true);
}

bool CPropertyCommands::AskPriority(unsigned& priority) {
    const std::optional<unsigned> chosen = m_services.prompts.AskPriority(m_writePriority);
    if (chosen)
        m_writePriority = priority = *chosen;
    return chosen.has_value();
}

std::optional<int> CPropertyCommands::PriorityFor(const BrowserSelection& target, bool isPresentValue) {
    if (!isPresentValue || !m_services.browser.GetDirectory().IsObjCommandable(target.device, target.object))
        return BACSTAC_NO_PRIORITY;
    unsigned priority = 0;
    return AskPriority(priority) ? std::optional(static_cast<int>(priority)) : std::nullopt;
}

std::unique_ptr<CPropertyValue> CPropertyCommands::ReadValue(const BrowserSelection& source, int arrayIndex) {
    const BACSTAC_PROPERTY_ID property = source.properties.front();
    CPropertyContents contents(BACSTAC_CONTENTS_SIZE);
    BACSTAC_ERROR error{};
    COBAsyncCallBack wait(m_services.window);
    const BACSTAC_STATUS status =
        m_services.bacnet.AsyncReadProperty(source.device, source.object, property, arrayIndex, contents, &error, wait);
    if (status != BACSTAC_OK) {
        Report("ReadProperty", status, error);
        return nullptr;
    }
    ConvertRaw(contents, source.object.Type, property);
    if (contents.GetDataType() < 0)
        return nullptr;
    // A device that gives another type than the standard says is as good as a proprietary property.
    std::unique_ptr<CPropertyValue> value = ValueOf(contents, source.object.Type, property, TYPE_NONE,
                                                    arrayIndex == BACSTAC_NO_INDEX ? AS_STANDARD : ONE_ELEMENT);
    return value ? std::move(value) : ValueAsRead(contents, source.object.Type, property);
}

bool CPropertyCommands::WriteValue(const CPropertyValue& value, int arrayIndex) {
    BrowserSelection target;
    if (!m_services.browser.GetSelection(target, true))
        return false;
    const BACSTAC_PROPERTY_ID property = target.properties.front();
    const std::optional<int> priority = PriorityFor(target, property == PROP_PRESENT_VALUE);
    if (!priority)
        return false;
    CPropertyContents contents(BACSTAC_CONTENTS_SIZE);
    value.WriteTo(contents); // a value that does not fit stays away, and the service refuses what is no value
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status = m_services.bacnet.WriteProperty(target.device, target.object, property, arrayIndex,
                                                                  *priority, contents, &error);
    if (status == BACSTAC_OK)
        m_services.browser.RefreshPropertyList();
    else
        Report("WriteProperty", status, error);
    return status == BACSTAC_OK;
}

// After a write that failed the editor comes up again with what the operator has typed.
void CPropertyCommands::EditAndWrite(CPropertyValue& value, int arrayIndex) {
    while (m_services.prompts.EditValue(value) && !WriteValue(value, arrayIndex))
        ;
}

void CPropertyCommands::Zoom() {
    const std::optional<PropertyRow> row = m_services.prompts.GetSelectedRow();
    const TreeItem* const item = m_services.window.GetSelectedItem();
    if (row && item)
        m_services.prompts.ShowValue("Value of \"" + row->name + "\" from \"" + item->label + "\"", row->value);
}

void CPropertyCommands::Edit() {
    BrowserSelection source;
    if (!m_services.browser.GetSelection(source, true))
        return;
    if (source.properties.front() == PROP_LOG_BUFFER) {
        m_services.prompts.ShowLogBuffer(source.device, source.object);
        return;
    }
    if (const auto value = ReadValue(source, BACSTAC_NO_INDEX))
        EditAndWrite(*value, BACSTAC_NO_INDEX);
    else
        Zoom(); // its text can still be looked at
}

void CPropertyCommands::EditArrayItem() {
    BrowserSelection source;
    if (!m_services.browser.GetSelection(source, true))
        return;
    const std::optional<unsigned> index = m_services.prompts.AskArrayIndex(m_arrayIndex);
    if (!index)
        return;
    m_arrayIndex = *index;
    const int arrayIndex = static_cast<int>(m_arrayIndex);
    if (const auto value = ReadValue(source, arrayIndex))
        EditAndWrite(*value, arrayIndex);
}

void CPropertyCommands::SetToNull() {
    BrowserSelection target;
    if (!m_services.browser.GetSelection(target, true))
        return;
    const BACSTAC_PROPERTY_ID property = target.properties.front();
    const std::optional<int> priority = PriorityFor(target, property == PROP_PRESENT_VALUE);
    if (!priority)
        return;
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status = m_services.bacnet.WritePropertyNull(target.device, target.object, property,
                                                                      BACSTAC_NO_INDEX, *priority, &error);
    Report("WriteProperty", status, error);
    m_services.browser.RefreshPropertyList();
}

void CPropertyCommands::Copy() {
    BrowserSelection source;
    if (!m_services.browser.GetSelection(source, false))
        return;
    m_copiedValues.clear(); // also when the read fails
    CContentsRoom room(source.properties.size());
    CRPMRequest request(static_cast<unsigned>(room.GetSize()));
    for (std::size_t i = 0; i < room.GetSize(); ++i)
        request.Append(source.properties[i], BACSTAC_NO_INDEX, room[i].Buffer, room[i].BufferSize);
    if (!request.Execute(source.device, m_services.bacnet.GetDevAddr(source.device), source.object)) {
        Report("Failure reading properties", request.Status, request.Error);
        return;
    }
    for (unsigned i = 0; i < request.GetItemCnt(); ++i) {
        BACSTAC_READ_RESULT_ITEM& item = *request.GetResult(i);
        if (item.Success == 0 || !ConvertRaw(item.Contents, source.object.Type, item.Property))
            continue;
        if (auto value = ValueAsRead(item.Contents, source.object.Type, item.Property))
            m_copiedValues.push_back(std::move(value));
    }
}

void CPropertyCommands::Paste() {
    if (m_copiedValues.size() == 1)
        WriteValue(*m_copiedValues.front(), BACSTAC_NO_INDEX);
    else if (!m_copiedValues.empty())
        PasteTogether();
}

// Each value to its own property of the selected object, whichever rows are selected.
void CPropertyCommands::PasteTogether() {
    BrowserSelection target;
    if (!m_services.browser.GetSelection(target, false))
        return;
    const auto isPresentValue = [](const auto& value) { return value->GetPropId() == PROP_PRESENT_VALUE; };
    const std::optional<int> priority = PriorityFor(target, std::ranges::any_of(m_copiedValues, isPresentValue));
    if (!priority)
        return;
    CContentsRoom room(m_copiedValues.size());
    CWPMRequest request(static_cast<unsigned>(room.GetSize()));
    for (std::size_t i = 0; i < room.GetSize(); ++i) {
        const auto& value = m_copiedValues[i];
        value->WriteTo(room[i]);
        request.Append(value->GetPropId(), BACSTAC_NO_INDEX, room[i],
                       isPresentValue(value) ? *priority : BACSTAC_NO_PRIORITY);
    }
    if (!request.Execute(target.device, m_services.bacnet.GetDevAddr(target.device), target.object))
        Report("Failure writing properties", request.Status, request.Error);
    m_services.browser.RefreshPropertyList();
}
