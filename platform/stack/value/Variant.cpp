#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"
#include "platform/stack/value/ValueFactory.h"

using namespace bacnet;

namespace {

constexpr unsigned ALIGNMENT_LOSS = 7;

static_assert(sizeof(BACSTAC_EVENT_PARAMETER) == sizeof(BACSTAC_FAULT_PARAMETER));

} // namespace

CPVVariant::CPVVariant(BACSTAC_DATA_TYPE type) : m_type(FindType(type)) {
    SetNumber(0);
}

CPVVariant::CPVVariant(const CPVVariant& other) : CPVElement(other), m_type(other.m_type) {
    Assign(other);
}

void CPVVariant::Assign(const CPVVariant& other) {
    if (this == &other)
        return;
    m_number = other.m_number;
    m_parameters.reset(other.m_parameters ? other.m_parameters->Clone() : nullptr);
    m_rawType = other.m_rawType;
    m_raw = other.m_raw;
    OnPropId();
}

std::unique_ptr<CPropertyValue> CPVVariant::NewParameters(unsigned number) const {
    const TypeInfo* const parameters = FindAlternative(*m_type, number);
    return parameters == nullptr ? nullptr : NewValue(parameters->Type);
}

void CPVVariant::SetNumber(unsigned number) {
    m_number = number;
    m_parameters = NewParameters(number);
    m_rawType = m_parameters ? TYPE_NONE : TYPE_NULL;
    m_raw.clear();
    OnPropId();
}

void CPVVariant::OnPropId() {
    if (m_parameters)
        m_parameters->SetPropId(GetObjType(), GetPropId());
}

bool CPVVariant::Load(const BufferView& buffer, const unsigned char* element) {
    const auto record = LoadAs<BACSTAC_EVENT_PARAMETER>(element);
    const BACSTAC_ANY_VALUE& any = record.Parameters;
    if (any.DataType == TYPE_RAW || any.DataType == TYPE_NULL) {
        const std::uint32_t size = any.DataType == TYPE_RAW ? any.ElementCount : 0;
        if (!buffer.Holds(any.Offset, size))
            return false;
        m_number = record.EventType;
        m_parameters.reset();
        m_rawType = any.DataType;
        m_raw.assign(buffer.Base + any.Offset, buffer.Base + any.Offset + size);
        return true;
    }
    std::unique_ptr<CPropertyValue> parameters = NewParameters(record.EventType);
    if (parameters == nullptr || any.DataType != parameters->GetDataType() ||
        !buffer.Holds(any.Offset, parameters->ElementSize()) || !parameters->Load(buffer, buffer.Base + any.Offset))
        return false;
    SetNumber(record.EventType);
    m_parameters = std::move(parameters);
    OnPropId();
    return true;
}

bool CPVVariant::Store(Sink& sink) const {
    std::uint8_t* at = sink.Append(sizeof(BACSTAC_EVENT_PARAMETER));
    if (at == nullptr)
        return false;
    const Sink::Mark mark = sink.Position();
    BACSTAC_EVENT_PARAMETER record{m_number, {m_rawType, 0, 0, 1}};
    if (m_parameters) {
        record.Parameters.DataType = m_parameters->GetDataType();
        if (!m_parameters->Store(sink))
            return false;
    } else if (m_rawType == TYPE_RAW) {
        record.Parameters.ElementCount = static_cast<std::uint32_t>(m_raw.size());
        std::uint8_t* octets = sink.Append(record.Parameters.ElementCount);
        if (octets == nullptr)
            return false;
        if (!m_raw.empty())
            std::memcpy(octets, m_raw.data(), m_raw.size());
    }
    record.Parameters.Size = sink.Low() - mark.Low;
    if (!sink.MoveBehind(mark, record.Parameters.Offset))
        return false;
    std::memcpy(at, &record, sizeof(record));
    return true;
}

unsigned CPVVariant::ReferredSize() const {
    const unsigned inner =
        m_parameters ? m_parameters->ElementSize() + m_parameters->ReferredSize() : static_cast<unsigned>(m_raw.size());
    return inner + ALIGNMENT_LOSS;
}
