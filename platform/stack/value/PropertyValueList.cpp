#include "api/bacnet/Jason.h"
#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/value/ValueFactory.h"

#include <limits>

using namespace bacnet;

namespace {

// A block that is moved behind the records may have to leave out this much before its start.
constexpr unsigned ALIGNMENT_LOSS = 7;

// The type that the elements have in memory.
BACSTAC_DATA_TYPE StoredType(BACSTAC_DATA_TYPE elementType) {
    return elementType == TYPE_ANY_PRIMITIVE ? TYPE_ANY : elementType;
}

} // namespace

CPropertyValueList::CPropertyValueList(BACSTAC_DATA_TYPE elementType, int count)
    : m_elementType(elementType), m_fixedCount(count > 0 ? static_cast<unsigned>(count) : 0) {}

CPropertyValueList::CPropertyValueList(const CPropertyValueList& other)
    : CPropertyValue(other), m_elementType(other.m_elementType), m_fixedCount(other.m_fixedCount) {
    Assign(other);
}

void CPropertyValueList::Assign(const CPropertyValueList& other) {
    if (this == &other)
        return;
    std::vector<std::unique_ptr<CPropertyValue>> elements;
    elements.reserve(other.m_elements.size());
    for (const auto& element : other.m_elements)
        elements.emplace_back(element ? element->Clone() : nullptr);
    m_elements = std::move(elements);
    SetPropId(other.GetObjType(), other.GetPropId());
}

CPropertyValue* CPropertyValueList::GetElement(unsigned index) const {
    return index < m_elements.size() ? m_elements[index].get() : nullptr;
}

bool CPropertyValueList::SetElement(unsigned index, CPropertyValue* value) {
    std::unique_ptr<CPropertyValue> owned(value);
    if (index >= m_elements.size())
        return false;
    m_elements[index] = std::move(owned);
    return true;
}

CPropertyValue* CPropertyValueList::CreateElement() const {
    std::unique_ptr<CPropertyValue> element = NewValue(m_elementType);
    if (element != nullptr)
        element->SetPropId(GetObjType(), GetPropId());
    return element.release();
}

void CPropertyValueList::Reset(unsigned count) {
    m_elements.clear();
    m_elements.resize(count);
}

void CPropertyValueList::OnPropId() {
    for (const auto& element : m_elements) {
        if (element)
            element->SetPropId(GetObjType(), GetPropId());
    }
}

CPropertyValue* CPropertyValueList::Clone() const {
    return new CPropertyValueList(*this);
}

unsigned CPropertyValueList::GetDataSize() const {
    unsigned size = 0;
    for (const auto& element : m_elements) {
        if (element)
            size += element->ElementSize() + element->ReferredSize();
    }
    return size;
}

bool CPropertyValueList::LoadElements(const BufferView& buffer, std::uint32_t offset, std::uint32_t count) {
    const TypeInfo* type = FindType(StoredType(m_elementType));
    if (type == nullptr)
        return false;
    std::vector<std::unique_ptr<CPropertyValue>> elements;
    const bool whole = ForEachElement(buffer, *type, offset, count, [&](const std::uint8_t* record) {
        std::unique_ptr<CPropertyValue> element(CreateElement());
        if (element == nullptr || !element->Load(buffer, record))
            return false;
        elements.push_back(std::move(element));
        return true;
    });
    if (whole)
        m_elements = std::move(elements);
    return whole;
}

bool CPropertyValueList::StoreElements(Sink& sink) const {
    for (const auto& element : m_elements) {
        if (element == nullptr || !element->Store(sink))
            return false;
    }
    return true;
}

// Contents of one primitive are a list of any primitives too.
bool CPropertyValueList::ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) {
    if (contents.DataType == StoredType(m_elementType))
        return LoadElements(BufferView::Of(contents), 0, contents.ElementCount);
    if (m_elementType != TYPE_ANY_PRIMITIVE || contents.DataType < 0)
        return false;
    CPropertyValueList primitives(contents.DataType);
    if (!primitives.ReadFrom(contents))
        return false;
    Reset(primitives.GetElementCnt());
    for (unsigned i = 0; i < primitives.GetElementCnt(); ++i) {
        auto element = std::make_unique<CPVAnyPrimitive>();
        element->Assign(primitives.GetElement(i)->Clone());
        element->SetPropId(GetObjType(), GetPropId());
        SetElement(i, element.release());
    }
    return true;
}

bool CPropertyValueList::ReadFrom(void const* data) {
    const auto* record = static_cast<const unsigned char*>(data);
    return record != nullptr && LoadElements({record, std::numeric_limits<std::uint32_t>::max()}, 0, 1);
}

bool CPropertyValueList::WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const {
    if (contents.BufferSize < CPropertyValueList::GetDataSize())
        return false;
    Sink sink(contents.Buffer, contents.BufferSize);
    if (!StoreElements(sink))
        return false;
    contents.DataType = StoredType(m_elementType);
    contents.ElementCount = GetElementCnt();
    return true;
}

bool CPropertyValueList::WriteTo(void* data, CHeap& /*heap*/) const {
    Sink sink(data, CPropertyValueList::GetDataSize());
    return data != nullptr && StoreElements(sink);
}

bool CPropertyValueList::Encode(jason::value_t& value) const {
    jason::value_t::array_t elements(m_elements.size());
    for (std::size_t i = 0; i < m_elements.size(); ++i) {
        if (m_elements[i] == nullptr || !m_elements[i]->Encode(elements[i]))
            return false;
    }
    value = jason::value_t(std::move(elements));
    return true;
}

bool CPropertyValueList::Decode(jason::value_t const& value) {
    const auto* const array = value.get<jason::value_t::array_t>();
    if (array == nullptr)
        return false;
    std::vector<std::unique_ptr<CPropertyValue>> elements;
    for (const jason::value_t& each : *array) {
        elements.emplace_back(CreateElement());
        if (elements.back() == nullptr || !elements.back()->Decode(each))
            return false;
    }
    m_elements = std::move(elements);
    return true;
}

bool CPropertyValueList::Load(const BufferView& buffer, const unsigned char* element) {
    const auto list = LoadAs<BACSTAC_LIST>(element);
    return LoadElements(buffer, list.Offset, list.Count);
}

bool CPropertyValueList::Store(Sink& sink) const {
    std::uint8_t* at = sink.Append(sizeof(BACSTAC_LIST));
    if (at == nullptr)
        return false;
    const Sink::Mark mark = sink.Position();
    BACSTAC_LIST list{GetElementCnt(), 0};
    if (!StoreElements(sink) || !sink.MoveBehind(mark, list.Offset))
        return false;
    std::memcpy(at, &list, sizeof(list));
    return true;
}

unsigned CPropertyValueList::ElementSize() const {
    return sizeof(BACSTAC_LIST);
}

unsigned CPropertyValueList::ReferredSize() const {
    return CPropertyValueList::GetDataSize() + ALIGNMENT_LOSS;
}

bool CPVNestedList::ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) {
    if (contents.DataType != m_type)
        return false;
    const void* element = FindElement(contents, 0);
    return element != nullptr && Load(BufferView::Of(contents), static_cast<const unsigned char*>(element));
}

bool CPVNestedList::ReadFrom(void const* data) {
    const auto* record = static_cast<const unsigned char*>(data);
    return record != nullptr && Load({record, std::numeric_limits<std::uint32_t>::max()}, record);
}

bool CPVNestedList::WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const {
    if (contents.BufferSize < GetDataSize())
        return false;
    Sink sink(contents.Buffer, contents.BufferSize);
    if (!Store(sink))
        return false;
    contents.DataType = m_type;
    contents.ElementCount = 1;
    return true;
}

bool CPVNestedList::WriteTo(void* data, CHeap& /*heap*/) const {
    Sink sink(data, GetDataSize());
    return data != nullptr && Store(sink);
}
