#include "api/bacnet/PropertyValue.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/value/JsonForm.h"

#include <limits>
#include <utility>
#include <vector>

using namespace bacnet;

CPropertyValue::~CPropertyValue() = default;

namespace {

// The table's row for what a value is as an element.
const TypeInfo* ElementType(const CPropertyValue& value) {
    return FindType(value.GetDataType() == TYPE_ANY_PRIMITIVE ? TYPE_ANY : value.GetDataType());
}

} // namespace

bool CPropertyValue::Encode(jason::value_t& value) const {
    const TypeInfo* const type = ElementType(*this);
    std::vector<std::uint8_t> memory(ElementSize() + ReferredSize());
    Sink sink(memory.data(), memory.size());
    jason::value_t encoded;
    if (type == nullptr || !Store(sink) ||
        !ElementToJson({memory.data(), memory.size()}, *type, memory.data(), encoded))
        return false;
    value = std::move(encoded);
    return true;
}

bool CPropertyValue::Decode(jason::value_t const& value) {
    const TypeInfo* const type = ElementType(*this);
    constexpr std::size_t mostBytes = std::size_t{16} << 20;
    for (std::size_t size = 1024; type != nullptr && size <= mostBytes; size *= 8) {
        std::vector<std::uint8_t> memory(size);
        Sink sink(memory.data(), memory.size());
        if (ElementFromJson(value, *type, sink))
            return Load({memory.data(), memory.size()}, memory.data());
        if (!sink.Full())
            return false;
    }
    return false;
}

void CPropertyValue::SetPropId(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property) {
    m_objectType = objectType;
    m_property = property;
    OnPropId();
}

std::string CPropertyValue::GetPropName() const {
    return m_property == PROP_NO_PROPERTY ? "" : CBACnetDir::GetStdPropName(m_property);
}

std::string CPropertyValue::GetTypeName() const {
    // A list that is an element itself has a data type of its own.
    const auto* const list = dynamic_cast<const CPropertyValueList*>(this);
    return CBACnetDir::GetDataTypeString(list != nullptr ? list->CPropertyValueList::GetDataType() : GetDataType());
}

std::string CPropertyValue::ToText(int arrayIndex) const {
    CPropertyContents contents(GetDataSize());
    if (!WriteTo(contents) || contents.DataType < 0)
        return {};
    // The print functions cut at the size they are given: as long as the text comes near it, there may be more.
    constexpr std::size_t longestCharacter = 4;
    constexpr std::size_t mostText = 16 * std::size_t{BACSTAC_CONTENTS_SIZE};
    std::string text(256, '\0');
    for (;;) {
        const int length = CBacGeneral::PrintContents(text.data(), static_cast<unsigned>(text.size()), contents,
                                                      m_objectType, m_property, arrayIndex);
        const std::size_t used = length < 0 ? 0 : static_cast<std::size_t>(length);
        if (used + longestCharacter < text.size() || text.size() >= mostText) {
            text.resize(used);
            return text;
        }
        text.resize(4 * text.size());
    }
}

bool CPVElement::ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) {
    if (contents.DataType != GetDataType())
        return false;
    const void* element = FindElement(contents, 0);
    return element != nullptr && Load(BufferView::Of(contents), static_cast<const unsigned char*>(element));
}

bool CPVElement::ReadFrom(void const* data) {
    const auto* record = static_cast<const unsigned char*>(data);
    return record != nullptr && Load({record, std::numeric_limits<std::uint32_t>::max()}, record);
}

bool CPVElement::WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const {
    if (contents.BufferSize < GetDataSize())
        return false;
    Sink sink(contents.Buffer, contents.BufferSize);
    if (!Store(sink))
        return false;
    contents.DataType = GetDataType();
    contents.ElementCount = 1;
    return true;
}

bool CPVElement::WriteTo(void* data, CHeap& /*heap*/) const {
    if (data == nullptr)
        return false;
    Sink sink(data, GetDataSize());
    return Store(sink);
}
