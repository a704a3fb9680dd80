#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"
#include "platform/stack/schema/TypeTable.h"
#include "platform/stack/value/ValueFactory.h"

#include <array>

using namespace bacnet;

namespace {

constexpr unsigned ALIGNMENT_LOSS = 7; // of a string that is moved behind the records

// A list, a string or an any-value of a record, by the type's table.
struct PartPlace {
    const Member* Of;
    unsigned Base;        // in the whole record: of the record that it is a member of
    const TypeInfo* Type; // of that record
    unsigned Offset() const { return Base + Of->Offset; }
};

// Calls visit(place, index) for the parts of a record; false when visit does.
template <typename Visit>
bool ForEachPart(const TypeInfo& type, Visit visit, unsigned base, unsigned& index) {
    for (const Member& member : type.Members) {
        if (member.Form == MemberForm::value) {
            const TypeInfo& inner = *FindType(member.Type);
            if (inner.HasReferences && !ForEachPart(inner, visit, base + member.Offset, index))
                return false;
        } else if (!visit(PartPlace{&member, base, &type}, index++)) {
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
    if (place.Type->Kind == TypeKind::choice)
        return LoadAs<std::uint32_t>(record + place.Base) == place.Of->Choice;
    return IsPresent(*place.Of, record + place.Base);
}

std::unique_ptr<CPropertyValue> NewPart(const Member& member) {
    if (member.Form == MemberForm::any || member.Form == MemberForm::values)
        return std::make_unique<CPVAnyPrimitive>();
    if (member.Form == MemberForm::string)
        return NewValue(member.Type);
    return std::make_unique<CPropertyValueList>(member.Type == TYPE_ANY ? TYPE_ANY_PRIMITIVE : member.Type);
}

// A string lies behind the record, which says where. Lists and any-values say so themselves.
bool LoadPart(const BufferView& buffer, const unsigned char* record, const PartPlace& place, CPropertyValue& part) {
    const unsigned char* const field = record + place.Offset();
    if (place.Of->Form != MemberForm::string)
        return part.Load(buffer, field);
    return part.Load(buffer, StringAt(buffer, place.Of->Type, LoadAs<std::uint32_t>(field)));
}

bool StorePart(Sink& sink, const PartPlace& place, const CPropertyValue& part, std::uint8_t* record) {
    const Sink::Mark mark = sink.Position();
    if (!part.Store(sink))
        return false;
    if (place.Of->Form == MemberForm::string) {
        std::uint32_t offset = 0;
        const bool moved = sink.MoveBehind(mark, offset);
        std::memcpy(record + place.Offset(), &offset, sizeof(offset));
        return moved;
    }
    // It has stored itself as an element: the list or any-value that belongs into the record.
    std::memcpy(record + place.Offset(), sink.Base() + mark.Low, part.ElementSize());
    sink.GoBack({mark.Low, sink.High()});
    return true;
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
        size += part->ReferredSize() + part->ElementSize() + ALIGNMENT_LOSS; // the element for a moment, see StorePart
    return size;
}

bool CPVStructure::Load(const BufferView& buffer, const unsigned char* element) {
    std::vector<std::unique_ptr<CPropertyValue>> parts;
    const TypeInfo& type = *FindType(m_type);
    const bool whole = ForEachPart(type, [&](const PartPlace& place, unsigned) {
        parts.push_back(NewPart(*place.Of));
        parts.back()->SetPropId(GetObjType(), GetPropId());
        return !IsThere(place, element) || LoadPart(buffer, element, place, *parts.back());
    });
    if (!whole)
        return false;
    m_parts = std::move(parts);
    std::memcpy(GetDataPtr(), element, type.Size);
    return true;
}

CPVConstructed::CPVConstructed(BACSTAC_DATA_TYPE type) : CPVStructure(type), m_record(FindType(type)->Size) {
    InitRecord(type, m_record.data());
}

CPVConstructed::CPVConstructed(const CPVConstructed& other) = default;

// The record goes out with what its parts say in their places.
bool CPVStructure::Store(Sink& sink) const {
    const TypeInfo& type = *FindType(m_type);
    std::uint8_t* at = sink.Append(type.Size);
    if (at == nullptr)
        return false;
    std::array<unsigned char, 256> record;
    std::memcpy(record.data(), Record(), type.Size);
    const bool stored = ForEachPart(type, [&](const PartPlace& place, unsigned index) {
        return !IsThere(place, record.data()) || StorePart(sink, place, *m_parts[index], record.data());
    });
    if (stored)
        std::memcpy(at, record.data(), type.Size);
    return stored;
}
