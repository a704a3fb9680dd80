#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"
#include "platform/stack/schema/TypeTable.h"

#include <array>

using namespace bacnet;

namespace {

// A list or an any-value of a record, by the type's table.
struct PartPlace {
    const Member* Of;
    unsigned Offset;        // in the whole record
    const TypeInfo* Choice; // whose alternative it is; null when it is always there
    unsigned ChoiceOffset;
};

// Calls visit(place, index) for the parts of a record; false when visit does.
template <typename Visit>
bool ForEachPart(const TypeInfo& type, Visit visit, unsigned base, unsigned& index) {
    for (const Member& member : type.Members) {
        const unsigned offset = base + member.Offset;
        if (member.Form == MemberForm::value) {
            const TypeInfo& inner = *FindType(member.Type);
            if (inner.HasReferences && !ForEachPart(inner, visit, offset, index))
                return false;
        } else if (!visit(PartPlace{&member, offset, type.Kind == TypeKind::choice ? &type : nullptr, base}, index++)) {
            return false;
        }
    }
    return true;
}

template <typename Visit>
bool ForEachPart(const TypeInfo& type, Visit visit) {
    unsigned index = 0;
    return ForEachPart(type, visit, 0, index);
}

bool IsThere(const PartPlace& place, const unsigned char* record) {
    return place.Choice == nullptr || LoadAs<std::uint32_t>(record + place.ChoiceOffset) == place.Of->Choice;
}

std::unique_ptr<CPropertyValue> NewPart(const Member& member) {
    if (member.Form == MemberForm::any)
        return std::make_unique<CPVAnyPrimitive>();
    return std::make_unique<CPropertyValueList>(member.Type == TYPE_ANY ? TYPE_ANY_PRIMITIVE : member.Type);
}

} // namespace

CPVStructure::CPVStructure(BACSTAC_DATA_TYPE type) : m_type(type) {
    ForEachPart(*FindType(type), [&](const PartPlace& place, unsigned) {
        m_parts.push_back(NewPart(*place.Of));
        return true;
    });
}

CPVStructure::CPVStructure(const CPVStructure& other) : CPVElement(other), m_type(other.m_type) {
    AssignParts(other);
}

void CPVStructure::AssignParts(const CPVStructure& other) {
    if (this == &other)
        return;
    std::vector<std::unique_ptr<CPropertyValue>> parts;
    parts.reserve(other.m_parts.size());
    for (const auto& part : other.m_parts)
        parts.emplace_back(part->Clone());
    m_parts = std::move(parts);
}

void CPVStructure::OnPropId() {
    for (const auto& part : m_parts)
        part->SetPropId(GetObjType(), GetPropId());
}

unsigned CPVStructure::ElementSize() const {
    return FindType(m_type)->Size;
}

unsigned CPVStructure::ReferredSize() const {
    unsigned size = 0;
    for (const auto& part : m_parts)
        size += part->ReferredSize() + part->ElementSize(); // which stands there for a moment, see Store
    return size;
}

bool CPVStructure::Load(const BufferView& buffer, const unsigned char* element) {
    std::vector<std::unique_ptr<CPropertyValue>> parts;
    const TypeInfo& type = *FindType(m_type);
    const bool whole = ForEachPart(type, [&](const PartPlace& place, unsigned) {
        parts.push_back(NewPart(*place.Of));
        parts.back()->SetPropId(GetObjType(), GetPropId());
        return !IsThere(place, element) || parts.back()->Load(buffer, element + place.Offset);
    });
    if (!whole)
        return false;
    m_parts = std::move(parts);
    std::memcpy(GetDataPtr(), element, type.Size);
    return true;
}

// The record goes out with what its parts say in their places.
bool CPVStructure::Store(Sink& sink) const {
    const TypeInfo& type = *FindType(m_type);
    std::uint8_t* at = sink.Append(type.Size);
    if (at == nullptr)
        return false;
    std::array<unsigned char, 256> record;
    std::memcpy(record.data(), Record(), type.Size);
    const bool stored = ForEachPart(type, [&](const PartPlace& place, unsigned index) {
        if (!IsThere(place, record.data()))
            return true;
        // A part stores itself as an element: the list or any-value that belongs into the record.
        const Sink::Mark mark = sink.Position();
        if (!m_parts[index]->Store(sink))
            return false;
        std::memcpy(record.data() + place.Offset, sink.Base() + mark.Low, m_parts[index]->ElementSize());
        sink.GoBack({mark.Low, sink.High()});
        return true;
    });
    if (stored)
        std::memcpy(at, record.data(), type.Size);
    return stored;
}
