#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"
#include "platform/stack/value/ValueFactory.h"

#include <limits>

using namespace bacnet;

namespace {

constexpr unsigned ALIGNMENT_LOSS = 7;

unsigned ElementCountOf(const CPropertyValue& value) {
    return value.IsCollection() ? static_cast<const CPropertyValueList&>(value).GetElementCnt() : 1;
}

} // namespace

CPVAnyPrimitive::CPVAnyPrimitive(const CPVAnyPrimitive& other) : CPropertyValue(other) {
    Assign(other);
}

void CPVAnyPrimitive::Clear() {
    m_value.reset();
    m_raw.reset();
}

void CPVAnyPrimitive::Assign(const CPVAnyPrimitive& other) {
    if (this == &other)
        return;
    m_value.reset(other.m_value ? other.m_value->Clone() : nullptr);
    m_raw = other.m_raw;
    OnPropId();
}

void CPVAnyPrimitive::Assign(CPropertyValue* value) {
    m_value.reset(value);
    m_raw.reset();
    OnPropId();
}

void CPVAnyPrimitive::OnPropId() {
    if (m_value)
        m_value->SetPropId(GetObjType(), GetPropId());
}

BACSTAC_DATA_TYPE CPVAnyPrimitive::GetValueType() const {
    if (m_value)
        return m_value->GetDataType();
    return m_raw ? TYPE_RAW : TYPE_NONE;
}

unsigned CPVAnyPrimitive::GetDataSize() const {
    if (m_value)
        return m_value->GetDataSize();
    return m_raw ? static_cast<unsigned>(m_raw->size()) : 0;
}

bool CPVAnyPrimitive::ReadFrom(BACSTAC_PROPERTY_CONTENTS const& contents) {
    const BufferView buffer = BufferView::Of(contents);
    if (contents.DataType == TYPE_ANY && contents.ElementCount == 1 && buffer.Holds(0, sizeof(BACSTAC_ANY_VALUE)))
        return Load(buffer, buffer.Base);
    std::unique_ptr<CPropertyValue> value;
    if (contents.ElementCount == 1)
        value = NewValue(contents.DataType);
    else if (FindType(contents.DataType) != nullptr)
        value = std::make_unique<CPropertyValueList>(contents.DataType);
    if (value == nullptr || !value->ReadFrom(contents))
        return false;
    Assign(value.release());
    return true;
}

bool CPVAnyPrimitive::ReadFrom(void const* data) {
    const auto* record = static_cast<const unsigned char*>(data);
    return record != nullptr && Load({record, std::numeric_limits<std::uint32_t>::max()}, record);
}

bool CPVAnyPrimitive::WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const {
    if (m_value)
        return m_value->WriteTo(contents);
    if (!m_raw || contents.BufferSize < m_raw->size())
        return false;
    if (!m_raw->empty())
        std::memcpy(contents.Buffer, m_raw->data(), m_raw->size());
    contents.DataType = TYPE_RAW;
    contents.ElementCount = static_cast<std::uint32_t>(m_raw->size());
    return true;
}

bool CPVAnyPrimitive::WriteTo(void* data, CHeap& heap) const {
    return m_value && m_value->WriteTo(data, heap);
}

bool CPVAnyPrimitive::Load(const BufferView& buffer, const unsigned char* element) {
    const auto any = LoadAs<BACSTAC_ANY_VALUE>(element);
    if (any.DataType == TYPE_RAW) {
        if (!buffer.Holds(any.Offset, any.ElementCount))
            return false;
        const std::uint8_t* octets = buffer.Base + any.Offset;
        m_value.reset();
        m_raw.emplace(octets, octets + any.ElementCount);
        return true;
    }
    if (any.DataType < 0) {
        Clear();
        return any.DataType == TYPE_NONE;
    }
    const TypeInfo* type = FindType(any.DataType);
    if (type == nullptr || !IsAnyValueType(type->Type))
        return false;
    std::unique_ptr<CPropertyValue> value;
    if (any.ElementCount == 1) {
        value = NewValue(any.DataType);
        const bool whole =
            value != nullptr && ForEachElement(buffer, *type, any.Offset, 1,
                                               [&](const std::uint8_t* record) { return value->Load(buffer, record); });
        if (!whole)
            return false;
    } else {
        auto list = std::make_unique<CPropertyValueList>(any.DataType);
        if (!list->LoadElements(buffer, any.Offset, any.ElementCount))
            return false;
        value = std::move(list);
    }
    Assign(value.release());
    return true;
}

bool CPVAnyPrimitive::Store(Sink& sink) const {
    std::uint8_t* at = sink.Append(sizeof(BACSTAC_ANY_VALUE));
    if (at == nullptr)
        return false;
    const Sink::Mark mark = sink.Position();
    BACSTAC_ANY_VALUE any{TYPE_NONE, 0, 0, 0};
    if (m_value != nullptr) {
        const bool list = m_value->IsCollection();
        any.DataType = m_value->GetDataType();
        any.ElementCount = ElementCountOf(*m_value);
        if (!(list ? static_cast<const CPropertyValueList&>(*m_value).StoreElements(sink) : m_value->Store(sink)))
            return false;
    } else if (m_raw) {
        any.DataType = TYPE_RAW;
        any.ElementCount = static_cast<std::uint32_t>(m_raw->size());
        std::uint8_t* octets = sink.Append(any.ElementCount);
        if (octets == nullptr)
            return false;
        if (!m_raw->empty())
            std::memcpy(octets, m_raw->data(), m_raw->size());
    }
    any.Size = sink.Low() - mark.Low;
    if (!sink.MoveBehind(mark, any.Offset))
        return false;
    std::memcpy(at, &any, sizeof(any));
    return true;
}

unsigned CPVAnyPrimitive::ReferredSize() const {
    return GetDataSize() + ALIGNMENT_LOSS;
}
